#include "ui/scripts/ScriptLook.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <algorithm>

#include "ui/support/Palettes.h"

namespace mirvel::ui {

namespace {

constexpr double leastContrast = 4.5;

struct Row {
  ScriptRole role;
  QRgb light;
  QRgb dark;
  QRgb highContrast;
};

constexpr Row rows[] = {
    {ScriptRole::Comment, 0xff55695a, 0xff8fa893, 0xff9be8a8},
    {ScriptRole::String, 0xff9a3412, 0xfff0a37f, 0xffffc08f},
    {ScriptRole::Number, 0xff1d57a8, 0xff8cc0ff, 0xffa8d4ff},
    {ScriptRole::Keyword, 0xff7f2292, 0xffd8a5f5, 0xffffa6ff},
    {ScriptRole::Variable, 0xff006373, 0xff71cfde, 0xff6ff5ff},
    {ScriptRole::Name, 0xff6b4d00, 0xffe3c571, 0xffffee66},
    {ScriptRole::Pattern, 0xff0b6638, 0xff82d6a2, 0xff7dffb0},
};

QColor active(const QPalette& palette, QPalette::ColorRole role) {
  return palette.color(QPalette::Active, role);
}

QColor wanted(ScriptRole role, const QPalette& palette) {
  if (role == ScriptRole::Error) return invalidData(palette);
  const auto* const row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& r) { return r.role == role; });
  if (row == std::end(rows)) return active(palette, QPalette::Text);
  if (isHighContrast(palette)) return QColor::fromRgb(row->highContrast);
  return QColor::fromRgb(schemeOf(palette) == Scheme::Dark ? row->dark : row->light);
}

/// The base with a share of another colour.
QColor tinted(const QPalette& palette, const QColor& front, float share) {
  const QColor back = active(palette, QPalette::Base);
  const auto mix = [share](float from, float to) { return from + share * (to - from); };
  return QColor::fromRgbF(mix(back.redF(), front.redF()), mix(back.greenF(), front.greenF()),
                          mix(back.blueF(), front.blueF()));
}

QColor currentLine(const QPalette& palette) {
  constexpr float share = 0.06F;
  return tinted(palette, active(palette, QPalette::Text), share);
}

QColor faultyLine(const QPalette& palette) {
  constexpr float share = 0.12F;
  return tinted(palette, invalidData(palette), share);
}

QColor lineNumber(const QPalette& palette) {
  QColor quiet = active(palette, QPalette::PlaceholderText);
  quiet.setAlpha(255);
  return quiet;
}

/// `color` if it has enough contrast to the base and to the lines with another background, otherwise the text colour.
QColor readable(const QColor& color, const QPalette& palette) {
  const double least = std::min({contrast(color, active(palette, QPalette::Base)),
                                 contrast(color, currentLine(palette)), contrast(color, faultyLine(palette))});
  return least >= leastContrast ? color : active(palette, QPalette::Text);
}

}  // namespace

ScriptLook scriptLook(const QPalette& palette) {
  ScriptLook look{.font = scriptFont(),
                  .base = active(palette, QPalette::Base),
                  .currentLine = currentLine(palette),
                  .faultyLine = faultyLine(palette),
                  .lineNumber = readable(lineNumber(palette), palette),
                  .selection = active(palette, QPalette::Highlight),
                  .selectedText = active(palette, QPalette::HighlightedText),
                  .roles = {}};
  for (std::size_t role = 0; role < ScriptLook::roleCount; ++role) {
    look.roles[role] = readable(wanted(static_cast<ScriptRole>(role), palette), palette);
  }
  return look;
}

QFont scriptFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (font.pointSizeF() <= 0) font.setPointSizeF(QFontInfo(font).pointSizeF());  // the font is defined in pixels
  return font;
}

}  // namespace mirvel::ui
