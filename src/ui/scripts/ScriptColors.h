#pragma once

#include <QColor>
#include <QPalette>

namespace mirvel::ui {

/// What a piece of a script is, whatever its language calls it.
enum class ScriptRole { Text, Comment, String, Number, Keyword, Variable, Name, Pattern, Error };

/// The colour of such a piece on the palette's base, and on the current line. The contrast to both is at least 4.5:1
/// (WCAG 2.1, level AA): where a desktop's base leaves too little, it is that of other text.
QColor scriptColor(ScriptRole role, const QPalette& palette);
/// What is behind the line with the insertion point.
QColor currentLine(const QPalette& palette);
QColor lineNumber(const QPalette& palette);

}  // namespace mirvel::ui
