#include "ui/support/Palettes.h"

#include <QColor>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace mirvel::ui {

namespace {

struct Row {
  QPalette::ColorRole role;
  QRgb light;
  QRgb dark;
};

constexpr Row rows[] = {
    {QPalette::Window, 0xfff3f3f4, 0xff2b2b2e},      {QPalette::WindowText, 0xff1c1c1e, 0xffe8e8ea},
    {QPalette::Base, 0xffffffff, 0xff1e1f22},        {QPalette::AlternateBase, 0xfff7f7f8, 0xff252629},
    {QPalette::Text, 0xff1c1c1e, 0xffe8e8ea},        {QPalette::PlaceholderText, 0xff68686f, 0xff9a9aa3},
    {QPalette::Button, 0xffececee, 0xff3a3a3e},      {QPalette::ButtonText, 0xff1c1c1e, 0xffe8e8ea},
    {QPalette::ToolTipBase, 0xffffffff, 0xff3a3a3e}, {QPalette::ToolTipText, 0xff1c1c1e, 0xfff0f0f2},
    {QPalette::Highlight, 0xff1d4f9e, 0xff1d4f9e},   {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    {QPalette::Link, 0xff0a4799, 0xff94beff},        {QPalette::LinkVisited, 0xff6a2fa0, 0xffcfb0ff},
    {QPalette::BrightText, 0xffffffff, 0xffffffff},  {QPalette::Light, 0xffffffff, 0xff4a4a4f},
    {QPalette::Midlight, 0xfff9f9fa, 0xff424247},    {QPalette::Mid, 0xffc4c4c8, 0xff232326},
    {QPalette::Dark, 0xffa0a0a6, 0xff1a1a1d},        {QPalette::Shadow, 0xff707076, 0xff000000},
};

constexpr Row disabledRows[] = {
    {QPalette::WindowText, 0xff7c7c84, 0xff8b8b93}, {QPalette::Text, 0xff7c7c84, 0xff8b8b93},
    {QPalette::ButtonText, 0xff7c7c84, 0xff8b8b93}, {QPalette::PlaceholderText, 0xff8e8e96, 0xff76767e},
    {QPalette::Highlight, 0xffd0d0d4, 0xff3f4046},  {QPalette::HighlightedText, 0xff5c5c63, 0xffb4b4bb},
    {QPalette::Base, 0xfff3f3f4, 0xff2b2b2e},       {QPalette::Link, 0xff7c7c84, 0xff8b8b93},
};

}  // namespace

QPalette paletteOf(Scheme scheme) {
  QPalette palette;
  const auto color = [scheme](const Row& row) {
    return QColor::fromRgba(scheme == Scheme::Dark ? row.dark : row.light);
  };
  for (const Row& row : rows) palette.setColor(row.role, color(row));
  for (const Row& row : disabledRows) palette.setColor(QPalette::Disabled, row.role, color(row));
  return palette;
}

QPalette highContrastPalette() {
  const QColor black = QColor::fromRgb(0x000000), white = QColor::fromRgb(0xffffff);
  const QColor quiet = QColor::fromRgb(0xcfcfcf), yellow = QColor::fromRgb(0xffee33);
  QPalette palette = paletteOf(Scheme::Dark);
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::AlternateBase, QPalette::Button,
                          QPalette::ToolTipBase, QPalette::HighlightedText}) {
    palette.setColor(role, black);
  }
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, white);
  }
  palette.setColor(QPalette::PlaceholderText, quiet);
  palette.setColor(QPalette::Highlight, yellow);
  return palette;
}

bool isHighContrast(const QPalette& palette) {
  constexpr double almostAll = 20;  // of 21
  const auto color = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role); };
  return schemeOf(palette) == Scheme::Dark && contrast(color(QPalette::Text), color(QPalette::Base)) >= almostAll;
}

Scheme schemeOf(const QPalette& palette) {
  const auto lightness = [&](QPalette::ColorRole role) { return palette.color(QPalette::Active, role).lightnessF(); };
  return lightness(QPalette::WindowText) > lightness(QPalette::Window) ? Scheme::Dark : Scheme::Light;
}

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

QColor invalidData(const QPalette& palette) {
  return QColor::fromRgb(schemeOf(palette) == Scheme::Dark ? 0xff6961 : 0xc8001a);
}

void markInvalidData(QWidget& field, const QString& what) {
  QPalette colors;  // unset roles are inherited from the parent
  if (!what.isEmpty()) {
    const QColor red = invalidData(field.parentWidget() ? field.parentWidget()->palette() : field.palette());
    colors.setColor(QPalette::Text, red);
    colors.setColor(QPalette::PlaceholderText, red);
  }
  field.setPalette(colors);
  field.setAccessibleDescription(what);
}

}  // namespace mirvel::ui
