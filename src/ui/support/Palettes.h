#pragma once

#include <QPalette>

namespace mirvel::ui {

enum class Scheme { Light, Dark };

/// The program's colours for the Fusion style, where the desktop has none of that scheme. Text has a contrast of at
/// least 7:1 (WCAG 2.1, level AAA).
QPalette paletteOf(Scheme scheme);

/// Whether a palette's text is lighter than its windows.
Scheme schemeOf(const QPalette& palette);

}  // namespace mirvel::ui
