#include "core/locale/Collator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace mirvel {
namespace {

int sign(int number) {
  return std::clamp(number, -1, 1);
}

TEST(CollatorTest, OrderIsThatOfTheLanguageWithNumbersByValue) {
  const std::pair<std::string, std::vector<std::string>> rows[] = {
      {"en", {"", "a", "A", "\u00e5", "\u00e4", "b", "job 2", "job 10", "z"}},
      {"sv", {"a", "b", "z", "\u00e5", "\u00e4"}},
      {"xx_NOWHERE", {"a", "A", "b"}},
      {"en", {std::string(300, 'a'), std::string(300, 'a') + "b", std::string(299, 'a') + "b"}},
  };
  for (const auto& [locale, sorted] : rows) {
    const Collator collator(locale);
    for (std::size_t i = 1; i < sorted.size(); ++i) {
      const auto &before = sorted[i - 1], &after = sorted[i];
      EXPECT_LT(collator.localizedStandardCompare(before, after), 0) << before << " " << after;
      EXPECT_GT(collator.localizedStandardCompare(after, before), 0) << before << " " << after;
      EXPECT_LT(collator.sortKey(before), collator.sortKey(after)) << before << " " << after;
    }
  }
}

/// Names as jobs have them, alike enough that every level of the order matters.
std::vector<std::string> asciiNames() {
  const std::vector<std::string> parts{"a",  "A", "b",   "ab", "aB", "Ch", "ch", "1", "01",
                                       "10", "2", "000", ".",  "-",  "_",  " ",  "~", "z"};
  std::minstd_rand random(1);
  std::vector<std::string> names{"", "99999999999999999999999", "100000000000000000000000"};
  while (names.size() < 400) {
    std::string name;
    for (auto count = random() % 5 + 1; count > 0; --count) name += parts[random() % parts.size()];
    names.push_back(std::move(name));
  }
  return names;
}

TEST(CollatorTest, AsciiKeysCompareAsTheTextsDo) {
  const auto names = asciiNames();
  for (const char* locale : {"en", "de", "ar", "ja"}) {
    const Collator collator(locale);
    std::vector<std::string> keys(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) ASSERT_TRUE(collator.appendAsciiKey(keys[i], names[i])) << names[i];
    for (std::size_t i = 0; i < names.size(); ++i) {
      for (std::size_t j = 0; j < names.size(); ++j) {
        ASSERT_EQ(sign(keys[i].compare(keys[j])), sign(collator.localizedStandardCompare(names[i], names[j])))
            << locale << ": " << names[i] << ", " << names[j];
      }
    }
  }
}

TEST(CollatorTest, OnlyPrintableAsciiInALocaleWithoutRulesForItHasAsciiKeys) {
  const struct {
    const char* locale;
    std::string text;
    bool hasKey;
  } rows[] = {
      {"en", "com.example.Job-1 ~", true},
      {"en", "\u00e4", false},
      {"en", "a\tb", false},
      {"en", std::string("a\0b", 3), false},
      {"en", std::string(250, '9'), true},
      {"en", std::string(251, '9'), false},
      {"cs", "chrome", false},  // "ch" sorts after "h"
      {"da", "Aa", false},      // upper case first, and "aa" sorts as "\u00e5"
  };
  for (const auto& row : rows) {
    std::string keys = "before";
    EXPECT_EQ(Collator(row.locale).appendAsciiKey(keys, row.text), row.hasKey) << row.locale << ": " << row.text;
    EXPECT_EQ(keys == "before", !row.hasKey) << row.locale << ": " << row.text;
  }
}

}  // namespace
}  // namespace mirvel
