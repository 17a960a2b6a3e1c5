#pragma once

#include <QColor>

namespace mirvel::ui {

/// How much two opaque colours differ in brightness, from 1 (not at all) to 21 (black and white), as
/// https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio defines it.
double contrast(const QColor& one, const QColor& other);

}  // namespace mirvel::ui
