#pragma once

#include <QFont>
#include <QPalette>

#include "core/scripts/SyntaxType.h"

class QsciLexer;
class QsciScintilla;

namespace mirvel::ui {

/// The font of the system whose characters are all as wide, with a size in points.
QFont scriptFont();

/// Sets what a lexer for a language draws with, whether it is in use or will be. Its own defaults go.
void styleLexer(QsciLexer& lexer, SyntaxType type, const QPalette& palette, const QFont& font);

/// Sets the colours and the font of a text without a lexer, and of all that is around the text of any: margin,
/// selection, current line and insertion point.
void styleSurroundings(QsciScintilla& text, const QPalette& palette, const QFont& font);

/// The first line of a script, if it names its interpreter, looks like a comment in every language: not all lexers know
/// such lines.
void styleInterpreterLine(QsciScintilla& text, SyntaxType type, const QPalette& palette);

}  // namespace mirvel::ui
