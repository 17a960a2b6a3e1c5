#include "core/locale/Collator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace mirvel {
namespace {

TEST(CollatorTest, OrderIsThatOfTheLanguageWithNumbersByValue) {
  struct Row {
    std::string locale;
    std::vector<std::string> sorted;
  };
  const std::vector<Row> rows{
      {"en", {"", "a", "A", "\u00e5", "\u00e4", "b", "job 2", "job 10", "z"}},
      {"sv", {"a", "b", "z", "\u00e5", "\u00e4"}},
      {"xx_NOWHERE", {"a", "A", "b"}},
  };
  for (const auto& row : rows) {
    const Collator collator(row.locale);
    for (std::size_t i = 1; i < row.sorted.size(); ++i) {
      const auto &before = row.sorted[i - 1], &after = row.sorted[i];
      EXPECT_LT(collator.localizedStandardCompare(before, after), 0) << before << " " << after;
      EXPECT_GT(collator.localizedStandardCompare(after, before), 0) << before << " " << after;
      EXPECT_LT(collator.sortKey(before), collator.sortKey(after)) << before << " " << after;
    }
  }
}

}  // namespace
}  // namespace mirvel
