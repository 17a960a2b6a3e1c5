#pragma once

#include <Qsci/qsciscintilla.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "core/scripts/SyntaxType.h"

namespace mirvel::ui {

/// The text of a script, to be read and edited: coloured by its language, in lines that aren't wrapped, from left to
/// right in windows of any direction. The bytes of the text stay as they are, line ends and what isn't UTF-8 included;
/// new lines end as the first one does. A text with a line of more than 10 000 columns isn't coloured.
///
/// Tab inserts one. Control-Tab leaves for the next widget, Shift-Tab (with nothing selected) for the one before.
class ScriptText : public QsciScintilla {
  Q_OBJECT
 public:
  /// `name` tells what this is to those who can't see it.
  explicit ScriptText(const QString& name, QWidget* parent = nullptr);
  ~ScriptText() override;

  /// In UTF-8.
  std::string text() const;
  /// Sets the whole text, unmodified and with nothing to be undone, and the insertion point to its start. `textChanged`
  /// is told once.
  void setText(std::string_view text);
  void setText(const QString& text) override;

  SyntaxType syntax() const { return m_syntax; }
  void setSyntax(SyntaxType type);
  /// Whether each change of the text sets the syntax by its first line, if that tells one.
  void setDetectsSyntax(bool detects);

  /// Bytes of the text before the insertion point.
  std::size_t insertionPoint() const;
  /// Moves it, with nothing selected, and scrolls there. A point behind the text is its end, one within a character is
  /// behind that.
  void setInsertionPoint(std::size_t point);

  bool areLineNumbersVisible() const { return m_lineNumbers; }
  void setLineNumbersVisible(bool visible);

 signals:
  /// Told when the syntax has changed, by a call or by what was typed.
  void syntaxChanged();

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void prepare();
  void leaveKeysToMenus();
  void textHasChanged();
  void useLexer();
  void detectSyntax();
  void applyStyle();
  long characterWidth() const;  ///< in pixels, of most
  void fitMargin();
  void fitScrollWidth();
  void followLineEnds();
  std::string_view bytes() const;  ///< valid until the text changes or is asked for anything else

  SyntaxType m_syntax = SyntaxType::none;
  long m_widestLine = 0;  ///< in columns
  bool m_detectsSyntax = false;
  bool m_lineNumbers = true;
  std::unique_ptr<QsciLexer> m_lexer;
};

}  // namespace mirvel::ui
