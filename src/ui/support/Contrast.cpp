#include "ui/support/Contrast.h"

#include <algorithm>
#include <cmath>

namespace mirvel::ui {

namespace {

// The constants of these functions are defined by WCAG 2.1 and the sRGB colour space.
double linear(double value) {
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace mirvel::ui
