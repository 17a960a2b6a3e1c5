#pragma once

#include <QColor>

namespace mirvel::ui {

/// The contrast ratio of two opaque colours, from 1 (equal luminance) to 21 (black and white), as defined in
/// https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio.
double contrast(const QColor& one, const QColor& other);

}  // namespace mirvel::ui
