#pragma once

#include "core/scripts/SyntaxType.h"
#include "ui/scripts/ScriptLook.h"

class QsciLexer;
class QsciScintilla;

namespace mirvel::ui {

/// Sets what a lexer for a language draws with, whether it is in use or will be. Its own defaults go.
void styleLexer(QsciLexer& lexer, SyntaxType type, const ScriptLook& look);

/// Sets the colours and the font of a text without a lexer, and of all that is around the text of any: margin,
/// selection, current line and insertion point.
void styleSurroundings(QsciScintilla& text, const ScriptLook& look);

/// The first line of a script, if it names its interpreter, looks like a comment in every language: not all lexers know
/// such lines.
void styleInterpreterLine(QsciScintilla& text, SyntaxType type, const ScriptLook& look);

}  // namespace mirvel::ui
