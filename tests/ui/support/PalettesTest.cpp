#include "ui/support/Palettes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace mirvel::ui {

namespace {

/// By https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio
double contrast(const QColor& one, const QColor& other) {
  const auto linear = [](double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  const auto luminance = [&](const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
  };
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace

TEST(Palettes, TextStandsOutFromWhatIsBehindIt) {
  using Palette = QPalette;
  const struct {
    Palette::ColorGroup group;
    Palette::ColorRole text;
    Palette::ColorRole behind;
    double least;
  } rows[] = {
      {Palette::Active, Palette::WindowText, Palette::Window, 7},
      {Palette::Active, Palette::Text, Palette::Base, 7},
      {Palette::Active, Palette::Text, Palette::AlternateBase, 7},
      {Palette::Active, Palette::ButtonText, Palette::Button, 7},
      {Palette::Active, Palette::ToolTipText, Palette::ToolTipBase, 7},
      {Palette::Active, Palette::HighlightedText, Palette::Highlight, 7},
      {Palette::Active, Palette::Link, Palette::Base, 7},
      {Palette::Active, Palette::Link, Palette::Window, 7},
      {Palette::Active, Palette::LinkVisited, Palette::Base, 7},
      {Palette::Active, Palette::PlaceholderText, Palette::Base, 4.5},
      {Palette::Inactive, Palette::HighlightedText, Palette::Highlight, 7},
      {Palette::Disabled, Palette::WindowText, Palette::Window, 3.5},
      {Palette::Disabled, Palette::Text, Palette::Base, 3.5},
      {Palette::Disabled, Palette::ButtonText, Palette::Button, 3},
      {Palette::Disabled, Palette::HighlightedText, Palette::Highlight, 3.5},
  };
  for (const Scheme scheme : {Scheme::Light, Scheme::Dark}) {
    const QPalette palette = paletteOf(scheme);
    EXPECT_EQ(schemeOf(palette), scheme);
    for (const auto& row : rows) {
      EXPECT_GE(contrast(palette.color(row.group, row.text), palette.color(row.group, row.behind)), row.least)
          << "scheme " << static_cast<int>(scheme) << ", group " << row.group << ", " << row.text << " on "
          << row.behind;
    }
    EXPECT_GT(contrast(palette.color(QPalette::Text), palette.color(QPalette::Base)),
              2 * contrast(palette.color(QPalette::Disabled, QPalette::Text), palette.color(QPalette::Base)))
        << "what is disabled looks so";
  }
}

}  // namespace mirvel::ui
