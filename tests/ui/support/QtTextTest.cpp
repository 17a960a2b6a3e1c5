#include "ui/support/QtText.h"

#include <gtest/gtest.h>

namespace mirvel::ui {

TEST(QtText, ConvertsEveryPathOrReportsThatItCant) {
  const struct {
    const char* bytes;
    bool isHeld;
  } rows[] = {
      {"/plain", true},
      {"/Gr\xC3\xBC\xC3\x9F"
       "e",
       true},
      {"/\xF0\x9F\x95\x92", true},
      {"/\xEF\xBF\xBD", true},
      {"/latin\xFC", false},
      {"/cut\xC3", false},
  };
  for (const auto& row : rows) {
    const auto held = qtPath(row.bytes);
    EXPECT_EQ(held.has_value(), row.isHeld) << row.bytes;
    EXPECT_TRUE(!held || path(*held) == row.bytes) << row.bytes;
  }
  EXPECT_EQ(displayText("/latin\xFC"), QStringLiteral("/latin\uFFFD"));
}

}  // namespace mirvel::ui
