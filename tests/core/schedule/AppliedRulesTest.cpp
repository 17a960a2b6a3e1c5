#include "core/schedule/AppliedRules.h"

#include <gtest/gtest.h>

#include "core/jobfile/Plist.h"
#include "core/locale/Dates.h"

namespace mirvel::Scheduled {
namespace {

using jobfile::StartCalendarInterval;
using Interval = StartCalendarInterval::Interval;

const Texts texts{
    .kinds = {"Repeat", "Every hour", "Every day", "Day of week", "Day of month", "Day of year"},
    .units = {"seconds", "minutes", "hours", "days"},
    .weekdays = "Weekdays",
    .weekends = "Weekends",
    .dayNames = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"},
    .monthNames = {"January", "February", "March", "April", "May", "June", "July", "August", "September", "October",
                   "November", "December"},
};
const Week egypt{.weekends = Days(0b1100000), .weekdays = Days(0b0011111)};
const TimePicker halfPastNine{Date::timeOfDay(9, 30)};

AppliedRules read(const std::vector<Row>& rows) {
  static const NumberText numbers("en_US");
  return readRows(rows, texts, numbers, egypt);
}

Row repeat(const std::string& unit, const std::string& number) {
  return {"Repeat", unit, NumberField{number}};
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
}

TEST(AppliedRulesTest, TheFirstReadableRepeatRowCounts) {
  EXPECT_EQ(read({repeat("hours", ""), repeat("minutes", "2"), repeat("days", "3")}).startInterval, 120);
}

TEST(AppliedRulesTest, EachKindOfRowYieldsItsIntervals) {
  const struct {
    Row row;
    std::vector<Interval> intervals;
  } table[] = {
      {{"Every hour", NumberField{"30"}, "minute"}, {{.minute = 30}}},
      {{"Every hour", NumberField{"99"}, "minute"}, {{.minute = 99}}},
      {{"Every day", halfPastNine}, {{.minute = 30, .hour = 9}}},
      {{"Day of week", "Tuesday", halfPastNine}, {{.minute = 30, .hour = 9, .weekday = 2}}},
      {{"Day of week", "Noday", halfPastNine}, {{.minute = 30, .hour = 9, .weekday = 0}}},
      {{"Day of week", "Weekends", halfPastNine},
       {{.minute = 30, .hour = 9, .weekday = 5}, {.minute = 30, .hour = 9, .weekday = 6}}},
      {{"Day of month", "31", halfPastNine}, {{.minute = 30, .hour = 9, .day = 31}}},
      {{"Day of year", "February", "29", halfPastNine}, {{.minute = 30, .hour = 9, .day = 29, .month = 2}}},
      {{"Day of year", "Nomonth", "1", halfPastNine}, {{.minute = 30, .hour = 9, .day = 1, .month = 1}}},
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
      {"Repeat", "hours"},
      {"Repeat", "hours", "2"},
      {"Repeat", NumberField{"2"}, NumberField{"2"}},
      {"Every hour", NumberField{"half"}, "minute"},
      {"Every hour", "30", "minute"},
      {"Every day", "09:30"},
      {"Day of week", "Tuesday"},
      {"Day of week", NumberField{"2"}, halfPastNine},
      {"Day of month", "first", halfPastNine},
      {"Day of month", "1", "09:30"},
      {"Day of year", "February", "", halfPastNine},
      {"Day of year", "February", "1"},
  };
  EXPECT_EQ(read(unreadable), AppliedRules{});
  std::vector<Row> rows = unreadable;
  rows.insert(rows.begin() + 5, {"Every day", halfPastNine});
  rows.push_back({"Every hour", NumberField{"5"}});
  EXPECT_EQ(read(rows).startCalendarInterval->intervals,
            (std::vector<Interval>{{.minute = 30, .hour = 9}, {.minute = 5}}));
}

TEST(AppliedRulesTest, ApplyReplacesTheScheduleOfTheRecord) {
  jobfile::Plist plist;
  plist.startInterval = 60;
  plist.startCalendarInterval = StartCalendarInterval{.intervals = {{}}, .singleValue = true};
  apply(read({{"Every day", halfPastNine}}), plist);
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

}  // namespace
}  // namespace mirvel::Scheduled
