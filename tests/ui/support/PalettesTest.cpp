#include "ui/support/Palettes.h"

#include <gtest/gtest.h>

#include <QImage>

#include "ui/support/Controls.h"

namespace mirvel::ui {

TEST(Contrast, IsThatOfTheGuidelines) {
  const struct {
    QRgb one;
    QRgb other;
    double ratio;
  } rows[] = {
      {0xff000000, 0xffffffff, 21},   {0xffffffff, 0xff000000, 21},   {0xff123456, 0xff123456, 1},
      {0xff777777, 0xffffffff, 4.48}, {0xff767676, 0xffffffff, 4.54}, {0xffff0000, 0xffffffff, 4.00},
      {0xff0000ff, 0xffffffff, 8.59},
  };
  for (const auto& row : rows) {
    EXPECT_NEAR(contrast(QColor::fromRgb(row.one), QColor::fromRgb(row.other)), row.ratio, 0.005) << row.one;
  }
}

TEST(Palettes, TextContrastsWithItsBackground) {
  using Palette = QPalette;
  const struct {
    Palette::ColorGroup group;
    Palette::ColorRole text;
    Palette::ColorRole background;
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
      EXPECT_GE(contrast(palette.color(row.group, row.text), palette.color(row.group, row.background)), row.least)
          << "scheme " << static_cast<int>(scheme) << ", group " << row.group << ", " << row.text << " on "
          << row.background;
    }
    for (const auto background : {QPalette::Base, QPalette::Window}) {
      EXPECT_GE(contrast(invalidData(palette), palette.color(background)), 4.5) << background;
    }
    EXPECT_GT(contrast(palette.color(QPalette::Text), palette.color(QPalette::Base)),
              2 * contrast(palette.color(QPalette::Disabled, QPalette::Text), palette.color(QPalette::Base)))
        << "disabled text looks disabled";
  }
}

TEST(CheckBoxTest, ADisabledTextIsReadable) {
  CheckBox box(QStringLiteral("MMMM"));
  QPalette palette(Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text}) {
    palette.setColor(QPalette::Disabled, role, palette.color(QPalette::Window));
  }
  palette.setColor(QPalette::Active, QPalette::PlaceholderText, Qt::red);
  box.setPalette(palette);
  box.setEnabled(false);
  QFont large = box.font();
  large.setPixelSize(40);
  box.setFont(large);
  box.resize(box.sizeHint());
  const QImage image = box.grab().toImage();
  bool isRed = false;
  for (int x = image.width() / 2; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) isRed = isRed || image.pixelColor(x, y) == QColor(Qt::red);
  }
  EXPECT_TRUE(isRed);
}

}  // namespace mirvel::ui
