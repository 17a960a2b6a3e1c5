#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <array>
#include <cstddef>

namespace mirvel::ui {

/// What a piece of a script is, whatever its language calls it.
enum class ScriptRole { Text, Comment, String, Number, Keyword, Variable, Name, Pattern, Error };

/// What a script is drawn with.
struct ScriptLook {
  static constexpr std::size_t roleCount = static_cast<std::size_t>(ScriptRole::Error) + 1;

  QFont font;
  QColor base;
  QColor currentLine;  ///< behind the line with the insertion point
  QColor lineNumber;
  QColor selection;
  QColor selectedText;
  std::array<QColor, roleCount> roles;

  const QColor& color(ScriptRole role) const { return roles[static_cast<std::size_t>(role)]; }
};

/// The look of scripts in widgets with a palette, in `scriptFont()`. The contrast of its colours to the base and to the
/// current line is at least 4.5:1 (WCAG 2.1, level AA): where a desktop's base leaves a colour too little, that of
/// other text takes its place.
ScriptLook scriptLook(const QPalette& palette);

/// The font of the system whose characters are all as wide, with a size in points.
QFont scriptFont();

}  // namespace mirvel::ui
