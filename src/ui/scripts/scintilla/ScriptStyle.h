#pragma once

#include "core/scripts/SyntaxType.h"
#include "ui/scripts/ScriptLook.h"

class QsciLexer;
class QsciScintilla;

namespace mirvel::ui {

/// Applies the look to a lexer, replacing its default colours and fonts. The lexer needn't be in use.
void styleLexer(QsciLexer& lexer, SyntaxType type, const ScriptLook& look);

/// Applies the look to text without a lexer, and to everything around the text: margin, selection, current line and
/// insertion point.
void styleSurroundings(QsciScintilla& text, const ScriptLook& look);

/// Draws an interpreter line (`#!`) like a comment, because some lexers don't recognise it.
void styleInterpreterLine(QsciScintilla& text, SyntaxType type, const ScriptLook& look);

}  // namespace mirvel::ui
