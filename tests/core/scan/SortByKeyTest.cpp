#include "core/scan/SortByKey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace mirvel {
namespace {

TEST(SortByKeyTest, SortsLikeAStableComparisonOfWholeKeys) {
  std::mt19937 random(7);
  const auto number = [&random](std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
  };
  std::vector<std::string> keys;
  for (std::size_t i = 0; i < 2000; ++i) {
    // Keys that begin alike for less or more bytes than are compared at once, and bytes beyond ASCII.
    std::string key(number(4) * 7 + number(2) * 150, 'k');
    for (std::size_t letters = number(5); letters > 0; --letters) key += static_cast<char>(1 + number(255));
    keys.push_back(std::move(key));
  }
  for (const bool isAscending : {true, false}) {
    std::vector<KeyedRow> rows;
    for (const auto& key : keys) rows.emplace_back(key, rows.size());
    auto expected = rows;
    std::stable_sort(expected.begin(), expected.end(), [isAscending](const KeyedRow& a, const KeyedRow& b) {
      return isAscending ? a.key < b.key : b.key < a.key;
    });
    sortByKey(rows, isAscending);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      ASSERT_EQ(rows[i].index, expected[i].index) << i;
      if (i == 0) continue;
      ASSERT_EQ(rows[i].hasKeyOf(rows[i - 1]), rows[i].key == rows[i - 1].key) << i;
    }
  }
}

}  // namespace
}  // namespace mirvel
