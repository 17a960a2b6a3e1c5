#include "ui/mainwindow/TimelineDelegate.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QImage>
#include <algorithm>
#include <vector>

namespace mirvel::ui {
namespace {

/// The first and the last column of pixels that contain ink.
std::pair<int, int> inked(const TabularText& text, Qt::AlignmentFlag side, const QString& time) {
  QImage image(300, 40, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  text.draw(painter, QRectF(50, 0, 200, 40), side, time);
  painter.end();
  std::pair<int, int> result{300, -1};
  for (int x = 0; x < image.width(); ++x) {
    for (int y = 0; y < image.height(); ++y) {
      if (image.pixel(x, y) != qRgb(255, 255, 255)) result = {std::min(result.first, x), std::max(result.second, x)};
    }
  }
  return result;
}

bool hasUnequalDigits(const QFont& font) {
  const QFontMetricsF metrics(font);
  return metrics.horizontalAdvance(u'1') != metrics.horizontalAdvance(u'8');
}

/// The default font, and one with digits of different widths if the machine has any.
std::vector<QFont> fonts() {
  std::vector<QFont> result{QFont()};
  for (const QString& family : QFontDatabase::families()) {
    if (result.size() == 1 && hasUnequalDigits(QFont(family, 20))) result.emplace_back(family, 20);
  }
  return result;
}

TEST(TabularText, AllDigitsHaveEqualWidth) {
  for (const QFont& font : fonts()) {
    const TabularText text(font);
    const qreal width = text.width(QStringLiteral("00:00 PM"));
    for (const char* other : {"11:11 PM", "17:41 PM", "88:88 PM"}) {
      EXPECT_DOUBLE_EQ(text.width(QString::fromLatin1(other)), width) << other << " in " << qPrintable(font.family());
    }
    EXPECT_LT(text.width(QStringLiteral("9:00 PM")), width);
  }
}

TEST(TabularText, TextIsAlignedToTheGivenSide) {
  for (const QFont& font : fonts()) {
    const TabularText text(font);
    for (const QString& time : {QStringLiteral("11:11"), QString::fromUtf8("٩:٠٠ ص")}) {
      const int width = static_cast<int>(text.width(time));
      const auto [leftBegin, leftEnd] = inked(text, Qt::AlignLeft, time);
      const auto [rightBegin, rightEnd] = inked(text, Qt::AlignRight, time);
      EXPECT_GE(leftBegin, 49);
      EXPECT_LE(leftEnd, 51 + width);
      EXPECT_GE(rightBegin, 249 - width);
      EXPECT_LE(rightEnd, 251);
    }
  }
}

}  // namespace
}  // namespace mirvel::ui
