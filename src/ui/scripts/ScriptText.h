#pragma once

#include <QWidget>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/locale/Localize.h"
#include "core/scripts/SyntaxType.h"

namespace mirvel::ui {

class ScriptEditor;
struct TextPosition;
struct TextSearch;

/// Shows and edits the text of a script: coloured by language, and left to right whatever the
/// direction of the window. The bytes of the text are preserved, including line ends and invalid UTF-8; new lines end
/// like the first one. Created by `makeScriptText`.
///
/// Tab inserts a tab. Control-Tab moves the focus to the next widget, Shift-Tab (with nothing selected) to the previous
/// one.
class ScriptText final : public QWidget {
  Q_OBJECT
 public:
  /// Creates the inner editor as a child of the given widget.
  using MakeEditor = std::function<ScriptEditor&(QWidget&)>;

  /// `name` is the accessible name. `localize` must outlive the widget.
  ScriptText(const MakeEditor& make, const Localize& localize, const QString& name, QWidget* parent = nullptr);
  ~ScriptText() override;

  const Localize& localize() const { return m_localize; }

  /// The bytes of the text, which are UTF-8 unless `setText` was called with something else.
  std::string text() const;
  /// Replaces the whole text, clears the undo history and the modified state, and moves the insertion point to the
  /// start. Emits `textChanged` once, unless the text was empty and still is.
  void setText(std::string_view text);
  /// The same for a large text, in pieces between which the event loop runs; calls `done` in the end, unless the widget
  /// is destroyed or gets another text before. Until then, the text can't be edited.
  void setTextInPieces(std::shared_ptr<const std::string> text, std::function<void()> done);
  /// Replaces the whole text as one edit that can be undone.
  void replaceText(std::string_view text);
  bool isModified() const;
  void setModified(bool modified);

  SyntaxType syntax() const { return m_syntax; }
  /// Sets the language that determines the colours. Preserves insertion point and undo history.
  void setSyntax(SyntaxType type);
  /// Whether every change of the text updates the syntax from the first line, if that names an interpreter.
  void setDetectsSyntax(bool detects);

  /// In bytes from the start of the text.
  std::size_t insertionPoint() const;
  /// Clears the selection, moves the insertion point and scrolls to it. A point beyond the end means the end; one
  /// inside of a character means the end of that character.
  void setInsertionPoint(std::size_t point);

  TextPosition position() const;
  void goToLine(int line);
  /// See the methods of the same names in `ScriptEditor`.
  bool find(const TextSearch& search, bool isBackwards = false);
  bool replace(const TextSearch& search, std::string_view replacement);
  int replaceAll(const TextSearch& search, std::string_view replacement);
  void setColoured(bool isColoured);
  void setIndentation(bool byTabs, int columns);
  void zoom(int points);
  bool canPrint() const;
  bool print(const QString& title, const QString& file = {});

  void setLineNumbersVisible(bool visible);
  /// Whether lines that are too wide continue in the next row. Default: false.
  void setWrapsLines(bool wraps);
  /// A text that isn't editable can still be set, selected and copied.
  void setEditable(bool editable);
  /// Marks the line with this point, in bytes from the start of the text, as faulty, until the text is changed or set.
  void markLine(std::size_t point);

 signals:
  /// Emitted after every change of the text, by the user or by a call.
  void textChanged();
  /// Emitted after the syntax has changed, by a call or by detection.
  void syntaxChanged();
  /// Emitted after the insertion point has moved.
  void moved();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void textHasChanged();
  void detectSyntax();
  void showMenu(QPoint position);
  void appendPiece();

  const Localize& m_localize;
  ScriptEditor& m_editor;
  SyntaxType m_syntax = SyntaxType::none;
  bool m_detectsSyntax = false;
  bool m_isEditable = true;

  /// A text that is being inserted.
  struct Pieces {
    std::shared_ptr<const std::string> text;
    std::size_t inserted = 0;
    std::function<void()> done;
  };
  Pieces m_pieces;  ///< no text: none is
};

}  // namespace mirvel::ui
