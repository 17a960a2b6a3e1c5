#include <gmock/gmock.h>

#include "core/jobfile/Plist.h"
#include "core/locale/Dates.h"
#include "core/schedule/AppliedRules.h"
#include "core/schedule/ScheduledController.h"

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

Rules rulesAt(int hour, std::initializer_list<int> days) {
  Rules result;
  for (const int day : days) result.emplace_back(DayOfWeek{day, Date::timeOfDay(hour, 0)});
  return result;
}

template <typename Element>
std::vector<Element> operator+(std::vector<Element> a, const std::vector<Element>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

TEST(RulesTest, DaysOfTheWeekAreMergedIntoGroups) {
  const struct {
    std::vector<Interval> intervals;
    const Week& week;
    Rules rules;
  } table[] = {
      {daysAt(9, {1, 2, 3, 4, 5, 6}), saturdayAndSunday, rulesAt(9, {7, 6})},
      {daysAt(9, {6, 5, 4, 3, 2, 1, 0}), saturdayAndSunday, rulesAt(9, {7, 8})},
      {daysAt(9, {0, 6}), saturdayAndSunday, rulesAt(9, {8})},
      {daysAt(9, {7, 6}), saturdayAndSunday, rulesAt(9, {8})},
      {daysAt(9, {1, 1, 2, 3, 4, 5, 5}), saturdayAndSunday, rulesAt(9, {7})},
      {daysAt(9, {1, 2, 3, 4}), saturdayAndSunday, rulesAt(9, {1, 2, 3, 4})},
      {daysAt(17, {1, 2, 3, 4, 5}) + daysAt(9, {1, 2, 3, 4, 5}), saturdayAndSunday, rulesAt(17, {7}) + rulesAt(9, {7})},
      {daysAt(17, {4, 1}) + daysAt(9, {1, 2, 3, 4, 5}), saturdayAndSunday, rulesAt(9, {7}) + rulesAt(17, {4, 1})},
      {daysAt(9, {5, 6}), fridayOnly, rulesAt(9, {8, 6})},
      {daysAt(9, {0, 1, 2, 3, 4, 6}), fridayOnly, rulesAt(9, {7})},
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
      {"ar_EG", Days(0b1100000)},
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

const Week egypt{.weekends = Days(0b1100000), .weekdays = Days(0b0011111)};
const TimePicker halfPastNine{Date::timeOfDay(9, 30)};

AppliedRules read(const std::vector<Row>& rows) {
  static const Localize localize("en");
  static const ScheduledController controller(localize);
  return readRows(rows, controller.texts(), controller.numbers(), egypt);
}

Row repeat(const std::string& unit, const std::string& number) {
  return {"Repeat Interval", unit, NumberField{number}};
}

TEST(AppliedRulesTest, RepeatIntervalsAreAtLeastTenSeconds) {
  const struct {
    Row row;
    std::optional<std::int64_t> seconds;
  } table[] = {
      {repeat("seconds", "90"), 90},
      {repeat("minutes", "2"), 120},
      {repeat("hours", "1,000"), 3600000},
      {repeat("days", "3"), 259200},
      {repeat("fortnights", "30"), 30},
      {repeat("seconds", "9"), 10},
      {repeat("seconds", "10"), 10},
      {repeat("days", "0"), 10},
      {repeat("hours", "-5"), 10},
      {repeat("days", "-9223372036854775808"), 10},
      {repeat("days", "106751991167300"), std::int64_t{106751991167300} * 86400},
      {repeat("days", "106751991167301"), std::nullopt},
      {repeat("minutes", "2.9"), 120},
  };
  for (const auto& row : table) {
    EXPECT_EQ(read({row.row}).startInterval, row.seconds) << std::get<NumberField>(row.row[2]).text;
  }
  EXPECT_EQ(read({repeat("hours", ""), repeat("minutes", "2"), repeat("days", "3")}).startInterval, 120)
      << "the first readable one";
}

TEST(AppliedRulesTest, EachKindOfRowYieldsItsIntervals) {
  const struct {
    Row row;
    std::vector<Interval> intervals;
  } table[] = {
      {{"Every Hour", NumberField{"30"}, "minute"}, {{.minute = 30}}},
      {{"Every Hour", NumberField{"99"}, "minute"}, {{.minute = 99}}},
      {{"Every Day", halfPastNine}, {{.minute = 30, .hour = 9}}},
      {{"Day of Week", "Tuesday", halfPastNine}, {{.minute = 30, .hour = 9, .weekday = 2}}},
      {{"Day of Week", "Noday", halfPastNine}, {{.minute = 30, .hour = 9, .weekday = 0}}},
      {{"Day of Week", "Weekends", halfPastNine},
       {{.minute = 30, .hour = 9, .weekday = 5}, {.minute = 30, .hour = 9, .weekday = 6}}},
      {{"Day of Month", "31", halfPastNine}, {{.minute = 30, .hour = 9, .day = 31}}},
      {{"Day of Year", "February", "29", halfPastNine}, {{.minute = 30, .hour = 9, .day = 29, .month = 2}}},
      {{"Day of Year", "Nomonth", "1", halfPastNine}, {{.minute = 30, .hour = 9, .day = 1, .month = 1}}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(read({row.row}).startCalendarInterval,
              (StartCalendarInterval{.intervals = row.intervals, .singleValue = false}))
        << std::get<std::string>(row.row[0]);
  }
}

TEST(AppliedRulesTest, UnreadableRowsAreSkipped) {
  const std::vector<Row> unreadable = {
      {},
      {halfPastNine},
      {"No kind", halfPastNine},
      {"every day", halfPastNine},
      {"Repeat Interval", "hours"},
      {"Repeat Interval", "hours", "2"},
      {"Repeat Interval", NumberField{"2"}, NumberField{"2"}},
      {"Every Hour", NumberField{"half"}, "minute"},
      {"Every Hour", "30", "minute"},
      {"Every Day", "09:30"},
      {"Day of Week", "Tuesday"},
      {"Day of Week", NumberField{"2"}, halfPastNine},
      {"Day of Month", "first", halfPastNine},
      {"Day of Month", "1", "09:30"},
      {"Day of Year", "February", "", halfPastNine},
      {"Day of Year", "February", "1"},
  };
  EXPECT_EQ(read(unreadable), AppliedRules{});
  std::vector<Row> rows = unreadable;
  rows.insert(rows.begin() + 5, {"Every Day", halfPastNine});
  rows.push_back({"Every Hour", NumberField{"5"}});
  EXPECT_EQ(read(rows).startCalendarInterval->intervals,
            (std::vector<Interval>{{.minute = 30, .hour = 9}, {.minute = 5}}));
}

TEST(AppliedRulesTest, ApplyReplacesTheScheduleOfTheRecord) {
  jobfile::Plist plist;
  plist.startInterval = 60;
  plist.startCalendarInterval = StartCalendarInterval{.intervals = {{}}, .singleValue = true};
  apply(read({{"Every Day", halfPastNine}}), plist);
  EXPECT_EQ(plist.startInterval, std::nullopt);
  EXPECT_EQ(plist.startCalendarInterval,
            (StartCalendarInterval{.intervals = {{.minute = 30, .hour = 9}}, .singleValue = true}));
  apply({}, plist);
  EXPECT_EQ(plist.startCalendarInterval, std::nullopt);
}

TEST(NumberTextTest, NumbersAreParsedInTheFormatOfTheLocale) {
  const struct {
    const char* locale;
    const char* text;
    std::optional<std::int64_t> number;
  } table[] = {
      {"en_US", "1,234,567", 1234567},
      {"en_US", "1,2", 12},
      {"en_US", "-12", -12},
      {"en_US", "12.75", 12},
      {"en_US", "9223372036854775807", INT64_MAX},
      {"en_US", "9223372036854775808", std::nullopt},
      {"en_US", "", std::nullopt},
      {"en_US", ",", std::nullopt},
      {"en_US", "12 apples", std::nullopt},
      {"en_US", "\u221e", std::nullopt},
      {"en_US", "NaN", std::nullopt},
      {"en_US", "\xff", std::nullopt},
      {"de_DE", "1.234", 1234},
      {"de_DE", "1.234,9", 1234},
      {"ar_EG", "\u0661\u0662\u0663", 123},
      {"ar_EG", "\u0661\u066c\u0662\u0663\u0664", 1234},
      {"ar_EG", "123", 123},
      {"no such locale", "12", 12},
  };
  for (const auto& row : table) {
    EXPECT_EQ(NumberText(row.locale).parseField(row.text), row.number) << row.locale << ": " << row.text;
  }
}

TEST(NumberTextTest, OnlyWholeNumbersInDigitsOrGroupedLikeTheLocaleAreExact) {
  const struct {
    const char* locale;
    const char* text;
    std::optional<std::int64_t> number;
  } table[] = {
      {"en", "0", 0},
      {"en", "007", 7},
      {"en", "-12", -12},
      {"en", "1,000", 1000},
      {"en", "-1,234,567", -1234567},
      {"en", "-9223372036854775808", INT64_MIN},
      {"en", "9223372036854775808", std::nullopt},
      {"en", "99999999999999999999", std::nullopt},
      {"en", "1,2", std::nullopt},
      {"en", "10,00", std::nullopt},
      {"en", "1,000,", std::nullopt},
      {"en", "1.5", std::nullopt},
      {"en", "1.0", std::nullopt},
      {"en", "1.000", std::nullopt},
      {"en", "", std::nullopt},
      {"en", "-", std::nullopt},
      {"en", "--1", std::nullopt},
      {"en", "+1", std::nullopt},
      {"en", " 1", std::nullopt},
      {"en", "5m", std::nullopt},
      {"en", "x", std::nullopt},
      {"en", "0x10", std::nullopt},
      {"en", "\u0661", std::nullopt},
      {"en", "\xff", std::nullopt},
      {"de", "1.000", 1000},
      {"de", "1,000", std::nullopt},
      {"fr", "1 000", 1000},
      {"fr", "1\u202f000", 1000},
      {"sv", "\u22125", -5},
      {"sv", "-5", -5},
      {"ar_EG", "\u0661\u0662", 12},
      {"ar_EG", "12", 12},
      {"ar_EG", "\u0661\u066c\u0662\u0663\u0664", 1234},
      {"ar_EG", "-\u0661", -1},
  };
  for (const auto& row : table) {
    EXPECT_EQ(NumberText(row.locale).parseWhole(row.text), row.number) << row.locale << ": " << row.text;
  }
}

}  // namespace
}  // namespace mirvel::Scheduled
