#include "ctl/Printable.h"

#include <gtest/gtest.h>

#include "ctl/Json.h"

namespace mirvel::ctl {
namespace {

TEST(PrintableTest, ControlCharactersAreEscaped) {
  const struct {
    std::string text;
    std::string escaped;
  } table[] = {
      {"", ""},
      {"plain – ünïcödé 漢字 \U0001F600", "plain – ünïcödé 漢字 \U0001F600"},
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x1b[31mred\x1b[0m\a", "\\x1b[31mred\\x1b[0m\\x07"},
      {std::string("a\0b", 3), "a\\x00b"},
      {"\x7f", "\\u007f"},
      {"\xC2\x9B"
       "31m",
       "\\u009b31m"},  // ESC [ as one C1 character
      {"\xE2\x80\xAE"
       "txt",
       "\\u202etxt"},
      {"\xE2\x81\xA6", "\\u2066"},
      {"\xFF\xC3(", "\\xff\\xc3("},  // not UTF-8
      {"\xE2\x80", "\\xe2\\x80"},
      {"\xED\xA0\x80", "\\xed\\xa0\\x80"},  // a lone surrogate
  };
  for (const auto& row : table) EXPECT_EQ(printable(row.text), row.escaped);
  EXPECT_EQ(printable("a\n\tb\x1b", LineFeeds::Keep), "a\n\tb\\x1b");
}

TEST(PrintableTest, EscapingPreservesJsonValues) {
  const std::string odd = "\"quoted\" \\ \x1b \x7f \xC2\x9B \xE2\x80\xAE é";
  const std::string dumped = text(Json{{"v", odd}});
  EXPECT_EQ(printable(dumped), dumped) << "something in it isn't safe";
  EXPECT_EQ(Json::parse(dumped)["v"], odd);
}

}  // namespace
}  // namespace mirvel::ctl
