#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <array>
#include <cstddef>

namespace mirvel::ui {

/// The role of a piece of a script, whatever the language calls it.
enum class ScriptRole { Text, Comment, String, Number, Keyword, Variable, Name, Pattern, Error };

/// The font and colours of a script.
struct ScriptLook {
  static constexpr std::size_t roleCount = static_cast<std::size_t>(ScriptRole::Error) + 1;

  QFont font;
  QColor base;
  QColor currentLine;  ///< background of the line with the insertion point
  QColor faultyLine;   ///< background of a marked line
  QColor lineNumber;
  QColor selection;
  QColor selectedText;
  std::array<QColor, roleCount> roles;

  const QColor& color(ScriptRole role) const { return roles[static_cast<std::size_t>(role)]; }
};

/// The look of scripts in widgets with this palette, in `scriptFont()`: the colours of a theme follow from its palette,
/// see `themePalette`. Each colour has a contrast of at least 4.5:1
/// (WCAG 2.1, level AA) to the base and to the two kinds of lines; a colour that would have less is replaced by the
/// text colour.
ScriptLook scriptLook(const QPalette& palette);

/// The system's fixed-width font, with a size in points.
QFont scriptFont();

}  // namespace mirvel::ui
