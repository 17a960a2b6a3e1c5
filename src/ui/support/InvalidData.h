#pragma once

#include <QColor>

#include "ui/support/Palettes.h"

namespace mirvel::ui {

/// The colour of a text that can't be taken as it is: red, with a contrast of at least 4.5:1 (WCAG 2.1, level AA) to
/// the fields and windows of the palette.
inline QColor invalidData(const QPalette& palette) {
  return QColor::fromRgb(schemeOf(palette) == Scheme::Dark ? 0xff6961 : 0xc8001a);
}

}  // namespace mirvel::ui
