#pragma once

#include <Qsci/qsciscintilla.h>

#include <memory>

#include "ui/scripts/ScriptEditor.h"
#include "ui/scripts/ScriptLook.h"

namespace mirvel::ui {

/// Edits a script with colours for its language, unless they are switched off. A text with a line of more than 10 000
/// columns isn't coloured. With a selection, Tab and Shift-Tab indent and unindent its lines.
class ScintillaEditor final : public QsciScintilla, public ScriptEditor {
  Q_OBJECT
 public:
  explicit ScintillaEditor(QWidget* parent = nullptr);
  ~ScintillaEditor() override;

  QWidget& widget() override { return *this; }
  std::string bytes() const override;
  void setBytes(std::string_view text) override;
  void replaceBytes(std::string_view text) override;
  void beginBytes() override;
  void appendBytes(std::string_view piece) override;
  void endBytes(std::string_view lineEnd) override;
  bool isModified() const override { return QsciScintilla::isModified(); }
  void setModified(bool modified) override { QsciScintilla::setModified(modified); }
  std::size_t insertionPoint() const override;
  void setInsertionPoint(std::size_t point) override;
  TextPosition position() const override;
  void goToLine(int line) override;
  bool find(const TextSearch& search, bool isBackwards) override;
  bool replace(const TextSearch& search, std::string_view replacement) override;
  int replaceAll(const TextSearch& search, std::string_view replacement) override;
  bool canUndo() const override { return isUndoAvailable(); }
  bool canRedo() const override { return isRedoAvailable(); }
  // hasSelectedText() isn't up to date yet when typing has just replaced the selection.
  bool hasSelection() const override { return SendScintilla(SCI_GETSELECTIONEMPTY) == 0; }
  void deleteSelection() override { removeSelectedText(); }
  void setSyntax(SyntaxType type) override;
  void setLook(const ScriptLook& look) override;
  void setColoured(bool isColoured) override;
  void setIndentation(bool byTabs, int columns) override;
  void zoom(int points) override;
  bool print(const QString& title, const QString& file) override;
  bool canPrint() const override { return true; }
  void setLineNumbersVisible(bool visible) override;
  void setWrapsLines(bool wraps) override { setWrapMode(wraps ? WrapWord : WrapNone); }
  void setEditable(bool editable) override { setReadOnly(!editable); }
  void markLine(std::optional<std::size_t> point) override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void prepare();
  void finishBytes(std::string_view lineEnd);
  void leaveKeysToMenus();
  void textHasChanged();
  void followLineEnd();
  void useDocument();
  void useLexer();
  void dropLexer();
  void applyStyle();
  long characterWidth() const;  ///< in pixels, of an average character
  void fitMargin();
  void fitScrollWidth();
  std::string_view content() const;  ///< valid until the text changes or Scintilla is called again

  SyntaxType m_syntax = SyntaxType::none;
  ScriptLook m_look = {};
  long m_widestLine = 0;  ///< in columns
  bool m_lineNumbers = true;
  bool m_isColoured = true;
  bool m_hasStyles = true;  ///< whether the document can have colours
  long m_eventsBefore = 0;  ///< while a text is inserted in pieces, as is the next one
  bool m_readOnlyBefore = false;
  std::unique_ptr<QsciLexer> m_lexer;
};

}  // namespace mirvel::ui
