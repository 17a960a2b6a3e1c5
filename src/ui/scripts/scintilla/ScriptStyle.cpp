#include "ui/scripts/scintilla/ScriptStyle.h"

#include <Qsci/qscilexer.h>
#include <Qsci/qsciscintilla.h>

#include "ui/scripts/scintilla/ScriptRoles.h"

namespace mirvel::ui {

namespace {

using Sci = QsciScintilla;

constexpr unsigned long interpreterIndicator = Sci::INDIC_CONTAINER;

bool namesInterpreter(const Sci& text) {
  return text.SendScintilla(Sci::SCI_GETCHARAT, 0UL) == '#' && text.SendScintilla(Sci::SCI_GETCHARAT, 1UL) == '!';
}

}  // namespace

void styleLexer(QsciLexer& lexer, SyntaxType type, const ScriptLook& look) {
  lexer.setDefaultColor(look.color(ScriptRole::Text));
  lexer.setDefaultPaper(look.base);
  lexer.setDefaultFont(look.font);
  for (int style = 0; style <= Sci::STYLE_MAX; ++style) {  // a lexer may use styles that it doesn't describe
    lexer.setColor(look.color(roleOfStyle(type, style)), style);
    lexer.setPaper(look.base, style);
    lexer.setFont(look.font, style);
    lexer.setEolFill(false, style);
  }
}

void styleSurroundings(Sci& text, const ScriptLook& look) {
  text.setFont(look.font);
  text.setColor(look.color(ScriptRole::Text));
  text.setPaper(look.base);
  for (int style = Sci::STYLE_BRACELIGHT; style <= Sci::STYLE_LASTPREDEFINED; ++style) {
    const auto number = static_cast<unsigned long>(style);
    text.SendScintilla(Sci::SCI_STYLESETFORE, number, look.color(ScriptRole::Text));
    text.SendScintilla(Sci::SCI_STYLESETBACK, number, look.base);
  }
  text.setMarginsFont(look.font);
  text.setMarginsForegroundColor(look.lineNumber);
  text.setMarginsBackgroundColor(look.base);
  text.setCaretForegroundColor(look.color(ScriptRole::Text));
  text.setCaretLineBackgroundColor(look.currentLine);
  text.setSelectionBackgroundColor(look.selection);
  text.setSelectionForegroundColor(look.selectedText);
}

void styleInterpreterLine(Sci& text, SyntaxType type, const ScriptLook& look) {
  text.SendScintilla(Sci::SCI_INDICSETSTYLE, interpreterIndicator, long{Sci::INDIC_TEXTFORE});
  text.SendScintilla(Sci::SCI_INDICSETFORE, interpreterIndicator, look.color(ScriptRole::Comment));
  text.SendScintilla(Sci::SCI_SETINDICATORCURRENT, interpreterIndicator);
  text.SendScintilla(Sci::SCI_INDICATORCLEARRANGE, 0UL, text.SendScintilla(Sci::SCI_GETLENGTH));
  if (type == SyntaxType::none || !namesInterpreter(text)) return;
  text.SendScintilla(Sci::SCI_INDICATORFILLRANGE, 0UL, text.SendScintilla(Sci::SCI_GETLINEENDPOSITION, 0UL));
}

}  // namespace mirvel::ui
