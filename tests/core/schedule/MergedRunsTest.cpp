#include "core/schedule/MergedRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/schedule/ComingRuns.h"

namespace mirvel {
namespace {

using namespace std::chrono;

constexpr sys_seconds begin = sys_days(2026y / 3 / 1);

TEST(MergedRunsTest, RunsAreSortedByTimeAndThenByRule) {
  const ZoneStretches zone("UTC", begin, begin + days(40));
  const OwnedRule rules[] = {{CalendarRule::asShown({0, 12}), 7},
                             {CalendarRule::asShown({0, 6}), 1},
                             {CalendarRule::asShown({0, 12, {}, 1}), 3},
                             {CalendarRule::asShown({0, 24}), 4},
                             {CalendarRule::asShown({0, 6, 3}), 1}};
  const std::vector<OwnedRun> runs = mergedRuns(rules, zone, begin + 6h, begin + days(2) + 6h);
  EXPECT_EQ(runs, (std::vector<OwnedRun>{{begin + 12h, 7}, {begin + 30h, 1}, {begin + 36h, 7}, {begin + 36h, 3}}));
  EXPECT_TRUE(mergedRuns({}, zone, begin, zone.end()).empty());
  EXPECT_TRUE(mergedRuns(rules, zone, begin, begin).empty());
}

TEST(MergedRunsTest, TheOrderEqualsThatOfAStableSort) {
  const auto end = begin + days(400);
  const ZoneStretches zone("Europe/Berlin", begin, end);
  std::mt19937 random(5);
  std::vector<OwnedRule> rules;
  std::vector<OwnedRun> expected;
  for (std::uint32_t owner = 0; owner < 300; ++owner) {
    rules.push_back({CalendarRule::asShown({random() % 60, random() % 24, 1 + random() % 31}), owner});
    ComingRuns runs(rules.back().rule, zone, begin, end);
    while (const auto run = runs.next()) expected.push_back({*run, owner});
  }
  std::stable_sort(expected.begin(), expected.end(), [](const auto& a, const auto& b) { return a.date < b.date; });
  EXPECT_EQ(mergedRuns(rules, zone, begin, end), expected);
}

}  // namespace
}  // namespace mirvel
