#include "ui/support/OwnIcons.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

namespace mirvel::ui {

namespace {

/// A bar four units wide in the middle of sixteen.
QIcon bar(const char* color, const QByteArray& ofRoot = {}) {
  const QByteArray svg = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16")" + ofRoot + '>' +
                         R"(<rect x="6" width="4" height="16" fill=")" + QByteArray(color) + R"("/></svg>)";
  return QIcon(new SvgIconEngine(svg));
}

QPalette paletteOf(QColor normal, QColor disabled, QColor selected) {
  QPalette palette;
  palette.setColor(QPalette::ButtonText, normal);
  palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled);
  palette.setColor(QPalette::HighlightedText, selected);
  return palette;
}

QColor middle(const QIcon& icon, QIcon::Mode mode) {
  return icon.pixmap(QSize(16, 16), 1.0, mode).toImage().pixelColor(8, 8);
}

}  // namespace

class SvgIconEngineTest : public testing::Test {
 protected:
  ~SvgIconEngineTest() override { QGuiApplication::setPalette(m_before); }

  QPalette m_before = QGuiApplication::palette();
};

TEST_F(SvgIconEngineTest, UsesTheColoursOfTheCurrentPalette) {
  const QIcon icon = bar("currentColor");
  const QPalette palettes[] = {paletteOf(Qt::red, Qt::gray, Qt::white), paletteOf(Qt::cyan, Qt::darkGray, Qt::black)};
  for (const QPalette& palette : palettes) {
    QGuiApplication::setPalette(palette);
    EXPECT_EQ(middle(icon, QIcon::Normal), palette.color(QPalette::Active, QPalette::ButtonText));
    EXPECT_EQ(middle(icon, QIcon::Active), palette.color(QPalette::Active, QPalette::ButtonText));
    EXPECT_EQ(middle(icon, QIcon::Disabled), palette.color(QPalette::Disabled, QPalette::ButtonText));
    EXPECT_EQ(middle(icon, QIcon::Selected), palette.color(QPalette::Active, QPalette::HighlightedText));
  }
}

TEST_F(SvgIconEngineTest, KeepsColoursOfItsOwnAndFadesThemWhereDisabled) {
  QGuiApplication::setPalette(paletteOf(Qt::black, Qt::gray, Qt::white));
  const QIcon icon = bar("#00ff00");
  EXPECT_EQ(middle(icon, QIcon::Normal), QColor(Qt::green));
  EXPECT_EQ(middle(icon, QIcon::Selected), QColor(Qt::green));
  EXPECT_LT(middle(icon, QIcon::Disabled).alpha(), 160);
  EXPECT_GT(middle(icon, QIcon::Disabled).alpha(), 40);
}

TEST_F(SvgIconEngineTest, OutlinesColoursOfItsOwnOnASelectedRowOnly) {
  QGuiApplication::setPalette(paletteOf(Qt::black, Qt::gray, Qt::white));
  const auto besideTheBar = [](QIcon::Mode mode) {
    return bar("#00ff00").pixmap(QSize(16, 16), 1.0, mode).toImage().pixelColor(5, 8);
  };
  EXPECT_EQ(besideTheBar(QIcon::Normal).alpha(), 0);
  EXPECT_GT(besideTheBar(QIcon::Selected).alpha(), 100);
  EXPECT_GT(besideTheBar(QIcon::Selected).red(), 240) << "white, as the text";
}

TEST_F(SvgIconEngineTest, HasTheColourOfItsRootExceptOnASelectedRow) {
  QGuiApplication::setPalette(paletteOf(Qt::black, Qt::gray, Qt::white));
  const QIcon icon = bar("currentColor", R"( color="#0000ff")");
  EXPECT_EQ(middle(icon, QIcon::Normal), QColor(Qt::blue));
  EXPECT_EQ(middle(icon, QIcon::Selected), QColor(Qt::white));
  EXPECT_LT(middle(icon, QIcon::Disabled).alpha(), 160);
  EXPECT_EQ(middle(bar("currentColor", R"( stop-color="#0000ff")"), QIcon::Normal), QColor(Qt::black));
}

TEST_F(SvgIconEngineTest, IsMirroredInARightToLeftInterfaceIfItHasADirection) {
  const auto isLeftInked = [](const char* ofRoot) {
    const QByteArray svg = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16")" + QByteArray(ofRoot) +
                           R"(><rect width="8" height="16"/></svg>)";
    return QIcon(new SvgIconEngine(svg)).pixmap(QSize(16, 16), 1.0).toImage().pixelColor(2, 8).alpha() > 0;
  };
  const char* const directional = R"( class="directional")";
  EXPECT_TRUE(isLeftInked(directional));
  QGuiApplication::setLayoutDirection(Qt::RightToLeft);
  EXPECT_FALSE(isLeftInked(directional));
  EXPECT_TRUE(isLeftInked(""));
  QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(SvgIconEngineTest, IsDrawnAtTheResolutionOfItsDevice) {
  for (const double ratio : {1.0, 1.5, 2.0, 3.0}) {
    QPixmap device((QSizeF(16, 16) * ratio).toSize());
    device.fill(Qt::white);
    device.setDevicePixelRatio(ratio);
    QPainter painter(&device);
    bar("#000000").paint(&painter, 0, 0, 16, 16);
    painter.end();
    const QImage image = device.toImage();
    const int left = static_cast<int>(6 * ratio);
    EXPECT_EQ(image.pixelColor(left - 1, 4), QColor(Qt::white)) << ratio;
    EXPECT_EQ(image.pixelColor(left, 4), QColor(Qt::black)) << ratio << ": a sharp edge, so not scaled up";
  }
}

TEST_F(SvgIconEngineTest, KeepsItsAspectRatioAndSurvivesBrokenSvg) {
  const QImage wide = bar("#000000").pixmap(QSize(64, 16), 1.0).toImage();
  int black = 0;
  for (int x = 0; x < wide.width(); ++x) black += wide.pixelColor(x, wide.height() / 2).alpha() == 255 ? 1 : 0;
  EXPECT_EQ(black, 4);

  const QIcon broken(new SvgIconEngine("<svg"));
  EXPECT_EQ(broken.pixmap(QSize(16, 16), 1.0).toImage().pixelColor(8, 8).alpha(), 0);
}

}  // namespace mirvel::ui
