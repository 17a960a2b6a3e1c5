#include "core/text/Digits.h"

#include <gtest/gtest.h>

namespace mirvel {
namespace {

using namespace std::string_literals;

TEST(DigitsTest, OnlyDigitsOfTheBaseAreRead) {
  const struct {
    std::string text;
    std::optional<std::int64_t> decimal, octal;
  } rows[] = {
      {"022", 22, 18},
      {"0", 0, 0},
      {"9", 9, std::nullopt},
      {"9223372036854775807", INT64_MAX, std::nullopt},
      {"9223372036854775808", std::nullopt, std::nullopt},
      {"777777777777777777777", std::nullopt, INT64_MAX},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Decimal::toInt(row.text), row.decimal) << row.text;
    EXPECT_EQ(Octal::toInt(row.text), row.octal) << row.text;
  }
  for (const std::string& text : {""s, "0x1"s, " 22"s, "22 "s, "-22"s, "+22"s, "22\0"s, "1000000000000000000000"s}) {
    EXPECT_EQ(Decimal::toInt(text), std::nullopt) << text;
    EXPECT_EQ(Octal::toInt(text), std::nullopt) << text;
  }
}

TEST(DigitsTest, MasksHaveAtLeastThreeOctalDigits) {
  const std::pair<std::int64_t, const char*> rows[] = {{18, "022"}, {0, "000"}, {4095, "7777"}, {-18, "-22"}};
  for (const auto& [mask, shown] : rows) EXPECT_EQ(Octal::displayString(mask), shown);
}

}  // namespace
}  // namespace mirvel
