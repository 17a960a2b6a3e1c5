#pragma once

#include <QPalette>

namespace mirvel::ui {

enum class Scheme { Light, Dark };

/// The program's palette for the Fusion style, used where the desktop offers none for the scheme. Text has a contrast
/// of at least 7:1 (WCAG 2.1, level AAA).
QPalette paletteOf(Scheme scheme);

/// Dark if the palette's text is lighter than its windows, otherwise Light.
Scheme schemeOf(const QPalette& palette);

}  // namespace mirvel::ui
