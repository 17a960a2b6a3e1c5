#include "ui/support/Controls.h"

#include <gtest/gtest.h>

#include <QImage>

namespace mirvel::ui {

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
