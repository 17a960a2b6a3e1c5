#include "ui/scripts/ScriptColors.h"

#include <algorithm>

#include "ui/support/Contrast.h"
#include "ui/support/InvalidData.h"
#include "ui/support/Palettes.h"

namespace mirvel::ui {

namespace {

constexpr double leastContrast = 4.5;

struct Row {
  ScriptRole role;
  QRgb light;
  QRgb dark;
};

constexpr Row rows[] = {
    {ScriptRole::Comment, 0xff55695a, 0xff8fa893},  {ScriptRole::String, 0xff9a3412, 0xfff0a37f},
    {ScriptRole::Number, 0xff1d57a8, 0xff8cc0ff},   {ScriptRole::Keyword, 0xff7f2292, 0xffd8a5f5},
    {ScriptRole::Variable, 0xff006373, 0xff71cfde}, {ScriptRole::Name, 0xff6b4d00, 0xffe3c571},
    {ScriptRole::Pattern, 0xff0b6638, 0xff82d6a2},
};

QColor base(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::Base);
}

QColor plainText(const QPalette& palette) {
  return palette.color(QPalette::Active, QPalette::Text);
}

QColor wanted(ScriptRole role, const QPalette& palette) {
  if (role == ScriptRole::Error) return invalidData(palette);
  const auto* const row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.role == role; });
  if (row == std::end(rows)) return plainText(palette);
  return QColor::fromRgb(schemeOf(palette) == Scheme::Dark ? row->dark : row->light);
}

/// The colour, if it can be read on the base and on the current line.
QColor readable(const QColor& color, const QPalette& palette) {
  const double least = std::min(contrast(color, base(palette)), contrast(color, currentLine(palette)));
  return least >= leastContrast ? color : plainText(palette);
}

}  // namespace

QColor scriptColor(ScriptRole role, const QPalette& palette) {
  return readable(wanted(role, palette), palette);
}

QColor currentLine(const QPalette& palette) {
  constexpr float share = 0.06F;
  const QColor behind = base(palette);
  const QColor front = plainText(palette);
  const auto mix = [](float from, float to) { return from + share * (to - from); };
  return QColor::fromRgbF(mix(behind.redF(), front.redF()), mix(behind.greenF(), front.greenF()),
                          mix(behind.blueF(), front.blueF()));
}

QColor lineNumber(const QPalette& palette) {
  QColor quiet = palette.color(QPalette::Active, QPalette::PlaceholderText);
  quiet.setAlpha(255);
  return readable(quiet, palette);
}

}  // namespace mirvel::ui
