#pragma once

#include <QKeyEvent>
#include <QString>
#include <QtPlugin>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/scripts/SyntaxType.h"

class QWidget;

namespace mirvel::ui {

struct ScriptLook;

/// What to look for in a text.
struct TextSearch {
  std::string text = {};  ///< UTF-8; nothing is found if it is empty, or an invalid expression
  bool matchesCase = false;
  bool wholeWords = false;
  bool isExpression = false;  ///< a regular expression
};

/// A place in a text, both counted from 1.
struct TextPosition {
  int line = 1;
  int column = 1;  ///< in characters
};

/// The widget inside a `ScriptText` that shows and edits the text. It is a child of another widget, which owns it.
/// Behaviour common to all editors is documented and implemented in `ScriptText`.
///
/// The editor preserves the bytes of the text, including line ends and invalid UTF-8; new lines end like the first one.
/// The keys that move the focus out of the widget are defined by `exitOf`.
class ScriptEditor {
 public:
  ScriptEditor() = default;
  virtual ~ScriptEditor() = default;
  ScriptEditor(const ScriptEditor&) = delete;
  ScriptEditor& operator=(const ScriptEditor&) = delete;

  /// Its slots include `undo`, `redo`, `cut`, `copy`, `paste` and `selectAll`.
  virtual QWidget& widget() = 0;

  virtual std::string bytes() const = 0;
  /// Replaces the whole text, clears the undo history and the modified state, and moves the insertion point to the
  /// start. Calls `changed` once, unless the text was empty and still is.
  virtual void setBytes(std::string_view text) = 0;
  /// Replaces the whole text as one edit that can be undone.
  virtual void replaceBytes(std::string_view text) = 0;
  /// Like `setBytes`, for a large text in pieces: `beginBytes`, any number of `appendBytes`, `endBytes` with the line
  /// end of the text. The last call notifies.
  virtual void beginBytes() = 0;
  virtual void appendBytes(std::string_view piece) = 0;
  virtual void endBytes(std::string_view lineEnd) = 0;
  virtual bool isModified() const = 0;
  virtual void setModified(bool modified) = 0;

  /// In bytes from the start of the text.
  virtual std::size_t insertionPoint() const = 0;
  /// Clears the selection, moves the insertion point and scrolls to it. A point beyond the end means the end; one
  /// inside of a character means the end of that character.
  virtual void setInsertionPoint(std::size_t point) = 0;

  virtual TextPosition position() const = 0;
  /// Moves the insertion point to the start of a line, counted from 1, or to the end of the text.
  virtual void goToLine(int line) = 0;

  /// Selects the next match after the selection, or the one before it; continues at the other end of the text. Returns
  /// false, and changes nothing, if there is none.
  virtual bool find(const TextSearch& search, bool isBackwards) = 0;
  /// Replaces the selection if it is a match, and then finds the next one. For an expression, see `expanded`.
  virtual bool replace(const TextSearch& search, std::string_view replacement) = 0;
  /// Replaces all matches as one edit, and returns their number.
  virtual int replaceAll(const TextSearch& search, std::string_view replacement) = 0;

  virtual bool canUndo() const = 0;
  virtual bool canRedo() const = 0;
  virtual bool hasSelection() const = 0;
  virtual void deleteSelection() = 0;

  /// The following calls preserve text, insertion point and undo history. An editor may ignore syntax and line numbers.
  virtual void setSyntax(SyntaxType type) = 0;
  virtual void setLook(const ScriptLook& look) = 0;
  /// Whether the text may be coloured. Without colours, every edit takes the same time however large the text is.
  virtual void setColoured(bool isColoured) = 0;
  /// What the Tab key inserts, and how wide a tab is, in columns.
  virtual void setIndentation(bool byTabs, int columns) = 0;
  /// Changes the size of the font by this many points; 0 restores it.
  virtual void zoom(int points) = 0;
  /// Asks for a printer, and prints the text; with the path of a file, writes a PDF there instead. Returns false if the
  /// user cancels, or the editor can't print.
  virtual bool print(const QString& title, const QString& file) = 0;
  virtual bool canPrint() const = 0;
  virtual void setLineNumbersVisible(bool visible) = 0;
  virtual void setWrapsLines(bool wraps) = 0;
  /// A text that isn't editable can still be set, selected and copied. Tab then moves the focus.
  virtual void setEditable(bool editable) = 0;
  /// Marks the line with this point, in bytes from the start of the text, as faulty. Null removes the mark.
  virtual void markLine(std::optional<std::size_t> point) = 0;

  /// Called after every change of the text.
  std::function<void()> changed = {};
  /// Called after the insertion point has moved.
  std::function<void()> moved = {};

 protected:
  void notifyChanged() const {
    if (changed) changed();
  }
  void notifyMoved() const {
    if (moved) moved();
  }
};

/// The interface by which the module offers its editor. The module links none of the program's libraries, so everything
/// it uses is declared in headers or passed to it.
class ScriptEditorFactory {
 public:
  ScriptEditorFactory() = default;
  virtual ~ScriptEditorFactory() = default;
  ScriptEditorFactory(const ScriptEditorFactory&) = delete;
  ScriptEditorFactory& operator=(const ScriptEditorFactory&) = delete;

  /// Creates an editor as a child of `parent`.
  virtual ScriptEditor& make(QWidget& parent) = 0;
};

/// The line end after the first line of a text: "\n", "\r\n" or "\r"; "\n" for a text of one line.
inline std::string_view lineEndOf(std::string_view text) {
  const auto end = text.find_first_of("\r\n");
  if (end == std::string_view::npos || text[end] == '\n') return "\n";
  return text.substr(end).starts_with("\r\n") ? "\r\n" : "\r";
}

/// Where a key press in the text of a script moves the focus.
enum class Exit { None, Next, Previous };

/// Since Tab inserts a tab, other keys move the focus: Control-Tab to the next widget, and Shift-Tab, with or without
/// Control, to the previous one. With `movesSelection`, plain Shift-Tab unindents the selected lines instead. If the
/// text isn't editable, Tab moves the focus, too.
inline Exit exitOf(const QKeyEvent& event, bool movesSelection, bool isEditable = true) {
  if (event.key() != Qt::Key_Tab && event.key() != Qt::Key_Backtab) return Exit::None;
  const bool isBack = event.key() == Qt::Key_Backtab || event.modifiers().testFlag(Qt::ShiftModifier);
  const bool isControl = (event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) != Qt::NoModifier;
  if (isEditable && !isControl && (!isBack || movesSelection)) return Exit::None;
  return isBack ? Exit::Previous : Exit::Next;
}

}  // namespace mirvel::ui

#define SCRIPT_EDITOR_FACTORY_ID "app.mirvel.ScriptEditorFactory"
Q_DECLARE_INTERFACE(mirvel::ui::ScriptEditorFactory, SCRIPT_EDITOR_FACTORY_ID)
