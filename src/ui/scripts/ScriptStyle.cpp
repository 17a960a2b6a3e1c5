#include "ui/scripts/ScriptStyle.h"

#include <Qsci/qscilexer.h>
#include <Qsci/qsciscintilla.h>

#include <QFontDatabase>
#include <QFontInfo>

#include "ui/scripts/ScriptColors.h"
#include "ui/scripts/ScriptRoles.h"

namespace mirvel::ui {

namespace {

using Sci = QsciScintilla;

constexpr unsigned long interpreterIndicator = Sci::INDIC_CONTAINER;

QColor active(const QPalette& palette, QPalette::ColorRole role) {
  return palette.color(QPalette::Active, role);
}

bool namesInterpreter(const Sci& text) {
  return text.SendScintilla(Sci::SCI_GETCHARAT, 0UL) == '#' && text.SendScintilla(Sci::SCI_GETCHARAT, 1UL) == '!';
}

}  // namespace

QFont scriptFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (font.pointSizeF() <= 0) font.setPointSizeF(QFontInfo(font).pointSizeF());  // one set in pixels
  return font;
}

void styleLexer(QsciLexer& lexer, SyntaxType type, const QPalette& palette, const QFont& font) {
  const QColor text = scriptColor(ScriptRole::Text, palette);
  const QColor base = active(palette, QPalette::Base);
  lexer.setDefaultColor(text);
  lexer.setDefaultPaper(base);
  lexer.setDefaultFont(font);
  for (int style = 0; style <= Sci::STYLE_MAX; ++style) {  // some that a lexer uses it doesn't describe
    lexer.setColor(scriptColor(roleOfStyle(type, style), palette), style);
    lexer.setPaper(base, style);
    lexer.setFont(font, style);
    lexer.setEolFill(false, style);
  }
}

void styleSurroundings(Sci& text, const QPalette& palette, const QFont& font) {
  text.setFont(font);
  text.setColor(scriptColor(ScriptRole::Text, palette));
  text.setPaper(active(palette, QPalette::Base));
  for (int style = Sci::STYLE_BRACELIGHT; style <= Sci::STYLE_LASTPREDEFINED; ++style) {
    const auto number = static_cast<unsigned long>(style);
    text.SendScintilla(Sci::SCI_STYLESETFORE, number, active(palette, QPalette::Text));
    text.SendScintilla(Sci::SCI_STYLESETBACK, number, active(palette, QPalette::Base));
  }
  text.setMarginsFont(font);
  text.setMarginsForegroundColor(lineNumber(palette));
  text.setMarginsBackgroundColor(active(palette, QPalette::Base));
  text.setCaretForegroundColor(active(palette, QPalette::Text));
  text.setCaretLineBackgroundColor(currentLine(palette));
  text.setSelectionBackgroundColor(active(palette, QPalette::Highlight));
  text.setSelectionForegroundColor(active(palette, QPalette::HighlightedText));
}

void styleInterpreterLine(Sci& text, SyntaxType type, const QPalette& palette) {
  text.SendScintilla(Sci::SCI_INDICSETSTYLE, interpreterIndicator, long{Sci::INDIC_TEXTFORE});
  text.SendScintilla(Sci::SCI_INDICSETFORE, interpreterIndicator, scriptColor(ScriptRole::Comment, palette));
  text.SendScintilla(Sci::SCI_SETINDICATORCURRENT, interpreterIndicator);
  text.SendScintilla(Sci::SCI_INDICATORCLEARRANGE, 0UL, text.SendScintilla(Sci::SCI_GETLENGTH));
  if (type == SyntaxType::none || !namesInterpreter(text)) return;
  text.SendScintilla(Sci::SCI_INDICATORFILLRANGE, 0UL, text.SendScintilla(Sci::SCI_GETLINEENDPOSITION, 0UL));
}

}  // namespace mirvel::ui
