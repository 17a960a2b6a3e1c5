#pragma once

#include <QKeyEvent>
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
  virtual bool isModified() const = 0;
  virtual void setModified(bool modified) = 0;

  /// In bytes from the start of the text.
  virtual std::size_t insertionPoint() const = 0;
  /// Clears the selection, moves the insertion point and scrolls to it. A point beyond the end means the end; one
  /// inside of a character means the end of that character.
  virtual void setInsertionPoint(std::size_t point) = 0;

  virtual bool canUndo() const = 0;
  virtual bool canRedo() const = 0;
  virtual bool hasSelection() const = 0;
  virtual void deleteSelection() = 0;

  /// The following calls preserve text, insertion point and undo history. An editor may ignore syntax and line numbers.
  virtual void setSyntax(SyntaxType type) = 0;
  virtual void setLook(const ScriptLook& look) = 0;
  virtual void setLineNumbersVisible(bool visible) = 0;
  virtual void setWrapsLines(bool wraps) = 0;
  /// A text that isn't editable can still be set, selected and copied. Tab then moves the focus.
  virtual void setEditable(bool editable) = 0;
  /// Marks the line with this point, in bytes from the start of the text, as faulty. Null removes the mark.
  virtual void markLine(std::optional<std::size_t> point) = 0;

  /// Called after every change of the text.
  std::function<void()> changed = {};

 protected:
  void notifyChanged() const {
    if (changed) changed();
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
