#include <gmock/gmock.h>

#include "core/locale/Dates.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {
namespace {

using jobfile::StartCalendarInterval;
using Interval = StartCalendarInterval::Interval;
using Unit = RepeatInterval::Unit;
using Rules = std::vector<ScheduledType>;

const Week saturdayAndSunday{.weekends = Days(0b1000001), .weekdays = Days(0b0111110)};
const Week fridayOnly{.weekends = Days(0b0100000), .weekdays = Days(0b1011111)};
Rules rulesOf(std::vector<Interval> intervals, const Week& week = saturdayAndSunday) {
  return rules({}, StartCalendarInterval{.intervals = std::move(intervals)}, week);
}

TEST(SplitIntervalTest, TheLargestExactUnitIsUsed) {
  const struct {
    std::int64_t seconds;
    RepeatInterval expected;
  } table[] = {
      {3600, {1, Unit::hours}},
      {90, {90, Unit::seconds}},
      {120, {2, Unit::minutes}},
      {86400, {1, Unit::days}},
      {86400 + 3600, {25, Unit::hours}},
      {86400 + 60, {1441, Unit::minutes}},
      {0, {0, Unit::days}},
      {-7200, {-2, Unit::hours}},
      {16777217, {16777217, Unit::seconds}},
      {INT64_MAX, {INT64_MAX, Unit::seconds}},
      // 2^24 + 1 minutes have no exact single-precision representation.
      {std::int64_t{16777217} * 60, {16777218, Unit::minutes}},
  };
  for (const auto& row : table) EXPECT_EQ(splitInterval(row.seconds), row.expected) << row.seconds;
}

TEST(RulesTest, EachIntervalYieldsTheRuleThatShowsMostOfIt) {
  const struct {
    Interval interval;
    ScheduledType rule;
  } table[] = {
      {{}, EveryHour{0}},
      {{.minute = 30}, EveryHour{30}},
      {{.minute = 60}, EveryHour{0}},
      {{.minute = -1}, EveryHour{0}},
      {{.month = 6}, EveryHour{0}},
      {{.hour = 9}, EveryDay{Date::timeOfDay(9, 0)}},
      {{.minute = 59, .hour = 23}, EveryDay{Date::timeOfDay(23, 59)}},
      {{.minute = 5, .hour = 24}, EveryDay{Date::timeOfDay(0, 5)}},
      {{.hour = INT64_MIN}, EveryDay{Date::timeOfDay(0, 0)}},
      {{.hour = 12, .month = 6}, EveryDay{Date::timeOfDay(12, 0)}},
      {{.weekday = 1}, DayOfWeek{1, Date::timeOfDay(0, 0)}},
      {{.minute = 15, .hour = 8, .weekday = 6}, DayOfWeek{6, Date::timeOfDay(8, 15)}},
      {{.weekday = 7}, DayOfWeek{0, Date::timeOfDay(0, 0)}},
      {{.weekday = 8}, DayOfWeek{0, Date::timeOfDay(0, 0)}},
      {{.weekday = -1}, DayOfWeek{0, Date::timeOfDay(0, 0)}},
      {{.weekday = 3, .month = 6}, DayOfWeek{3, Date::timeOfDay(0, 0)}},
      {{.day = 1}, DayOfMonth{0, Date::timeOfDay(0, 0)}},
      {{.day = 0}, DayOfMonth{0, Date::timeOfDay(0, 0)}},
      {{.hour = 7, .day = 31}, DayOfMonth{30, Date::timeOfDay(7, 0)}},
      {{.day = 40}, DayOfMonth{30, Date::timeOfDay(0, 0)}},
      {{.day = INT64_MIN}, DayOfMonth{0, Date::timeOfDay(0, 0)}},
      {{.day = 2, .weekday = 3}, DayOfMonth{1, Date::timeOfDay(0, 0)}},
      {{.day = 2, .weekday = 3, .month = 1}, DayOfYear{0, 1, Date::timeOfDay(0, 0)}},
      {{.day = 1, .month = 0}, DayOfYear{0, 0, Date::timeOfDay(0, 0)}},
      {{.day = 1, .month = 13}, DayOfYear{11, 0, Date::timeOfDay(0, 0)}},
      {{.minute = 1, .hour = 2, .day = 31, .month = 2}, DayOfYear{1, 30, Date::timeOfDay(2, 1)}},
  };
  int row = 0;
  for (const auto& [interval, rule] : table) {
    EXPECT_EQ(rulesOf({interval}), Rules{rule}) << "row " << row;
    ++row;
  }
}

/// One interval for each day, at the same hour.
std::vector<Interval> daysAt(std::int64_t hour, std::initializer_list<int> days) {
  std::vector<Interval> intervals;
  for (const int day : days) intervals.push_back({.hour = hour, .weekday = day});
  return intervals;
}

std::vector<Interval> operator+(std::vector<Interval> a, const std::vector<Interval>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

TEST(RulesTest, DaysOfTheWeekAreMergedIntoGroups) {
  const struct {
    std::vector<Interval> intervals;
    const Week& week;
    Rules rules;
  } table[] = {
      {daysAt(9, {1, 2, 3, 4, 5, 6}),
       saturdayAndSunday,
       {DayOfWeek{7, Date::timeOfDay(9, 0)}, DayOfWeek{6, Date::timeOfDay(9, 0)}}},
      {daysAt(9, {6, 5, 4, 3, 2, 1, 0}),
       saturdayAndSunday,
       {DayOfWeek{7, Date::timeOfDay(9, 0)}, DayOfWeek{8, Date::timeOfDay(9, 0)}}},
      {daysAt(9, {0, 6}), saturdayAndSunday, {DayOfWeek{8, Date::timeOfDay(9, 0)}}},
      {daysAt(9, {7, 6}), saturdayAndSunday, {DayOfWeek{8, Date::timeOfDay(9, 0)}}},
      {daysAt(9, {1, 1, 2, 3, 4, 5, 5}), saturdayAndSunday, {DayOfWeek{7, Date::timeOfDay(9, 0)}}},
      {daysAt(9, {1, 2, 3, 4}),
       saturdayAndSunday,
       {DayOfWeek{1, Date::timeOfDay(9, 0)}, DayOfWeek{2, Date::timeOfDay(9, 0)}, DayOfWeek{3, Date::timeOfDay(9, 0)},
        DayOfWeek{4, Date::timeOfDay(9, 0)}}},
      {daysAt(17, {1, 2, 3, 4, 5}) + daysAt(9, {1, 2, 3, 4, 5}),
       saturdayAndSunday,
       {DayOfWeek{7, Date::timeOfDay(17, 0)}, DayOfWeek{7, Date::timeOfDay(9, 0)}}},
      {daysAt(17, {4, 1}) + daysAt(9, {1, 2, 3, 4, 5}),
       saturdayAndSunday,
       {DayOfWeek{7, Date::timeOfDay(9, 0)}, DayOfWeek{4, Date::timeOfDay(17, 0)},
        DayOfWeek{1, Date::timeOfDay(17, 0)}}},
      {daysAt(9, {5, 6}), fridayOnly, {DayOfWeek{8, Date::timeOfDay(9, 0)}, DayOfWeek{6, Date::timeOfDay(9, 0)}}},
      {daysAt(9, {0, 1, 2, 3, 4, 6}), fridayOnly, {DayOfWeek{7, Date::timeOfDay(9, 0)}}},
  };
  int row = 0;
  for (const auto& [intervals, week, expected] : table) {
    EXPECT_EQ(rulesOf(intervals, week), expected) << "row " << row;
    ++row;
  }
}

TEST(RulesTest, TheRepeatRuleComesFirstAndSingleDaysLast) {
  auto intervals = daysAt(9, {3}) + daysAt(9, {0, 6});
  intervals.push_back({.minute = 5});
  intervals.push_back({.hour = 1});
  EXPECT_EQ(rules(600, StartCalendarInterval{.intervals = intervals}, saturdayAndSunday),
            (Rules{RepeatInterval{10, Unit::minutes}, EveryHour{5}, EveryDay{Date::timeOfDay(1, 0)},
                   DayOfWeek{8, Date::timeOfDay(9, 0)}, DayOfWeek{3, Date::timeOfDay(9, 0)}}));
  EXPECT_EQ(rules({}, {}, saturdayAndSunday), Rules{});
}

TEST(WeekTest, WeekendsDependOnTheRegion) {
  const struct {
    const char* locale;
    Days weekends;
  } table[] = {
      {"en_US", Days(0b1000001)},
      {"de_DE", Days(0b1000001)},
      {"ar_EG", Days(0b1100000)},
      {"he_IL", Days(0b1100000)},
      {"fa_IR", Days(0b0100000)},
      {"hi_IN", Days(0b0000001)},
      {"en_US@calendar=buddhist", Days(0b1000001)},
      {"no such locale", Days(0b1000001)},
      {"", Days(0b1000001)},
  };
  for (const auto& row : table) {
    const Week week = Week::of(row.locale);
    EXPECT_EQ(week.weekends, row.weekends) << row.locale;
    EXPECT_EQ(week.weekdays, ~row.weekends) << row.locale;
  }
}

}  // namespace
}  // namespace mirvel::Scheduled
