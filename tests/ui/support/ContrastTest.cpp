#include "ui/support/Contrast.h"

#include <gtest/gtest.h>

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

}  // namespace mirvel::ui
