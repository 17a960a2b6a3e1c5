#include "core/schedule/ComingRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "core/schedule/MergedRuns.h"
#include "core/schedule/UtcText.h"

namespace mirvel {
namespace {

using namespace std::chrono;
using Interval = jobfile::StartCalendarInterval::Interval;

/// "2026-03-29 01:30", in UTC.
sys_seconds at(const std::string& text) {
  int year = 0, minute = 0;
  unsigned month = 0, day = 0, hour = 0;
  EXPECT_EQ(std::sscanf(text.c_str(), "%d-%u-%u %u:%d", &year, &month, &day, &hour, &minute), 5) << text;
  return sys_days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day)) + hours(hour) +
         minutes(minute);
}

struct Row {
  const char* zone;
  Interval interval;
  const char* after;
  const char* end;
  std::string runs;  ///< "03-28 01:30, 03-30 00:30", with the year if it isn't that of `after`
};

void append(std::string& runs, sys_seconds run, const Row& row) {
  const std::string text = utcText(run);
  if (!runs.empty()) runs += ", ";
  runs += text.starts_with(std::string(row.after, 5)) ? text.substr(5) : text;
}

std::string runsOf(const Row& row, const CalendarRule& rule) {
  const ZoneStretches zone(row.zone, at(row.after), at(row.end));
  ComingRuns runs(rule, zone, at(row.after), at(row.end));
  std::string result, visited;
  while (const auto run = runs.next()) append(result, *run, row);
  forEachRun(rule, zone, at(row.after), at(row.end), [&](sys_seconds run) { append(visited, run, row); });
  EXPECT_EQ(visited, result);
  return result;
}

constexpr const char* berlin = "Europe/Berlin";          // forward 2026-03-29 01:00 UTC, back 2026-10-25 01:00 UTC
constexpr const char* newYork = "America/New_York";      // forward 2026-03-08 07:00 UTC, back 2026-11-01 06:00 UTC
constexpr const char* lordHowe = "Australia/Lord_Howe";  // half an hour: back 2026-04-04 15:00, forward 10-03 15:30
constexpr const char* casablanca = "Africa/Casablanca";  // back for Ramadan 2026-02-15 02:00, forward 03-22 02:00
constexpr const char* utc = "Etc/UTC";

TEST(ComingRunsTest, TheSkippedHourHasNoRunAndTheRepeatedHourOne) {
  const Row rows[] = {
      {berlin, {30, 2}, "2026-03-28 00:00", "2026-03-31 00:00", "03-28 01:30, 03-30 00:30"},
      {berlin, {59, 1}, "2026-03-28 12:00", "2026-03-29 12:00", "03-29 00:59"},
      {berlin, {0, 3}, "2026-03-28 12:00", "2026-03-29 12:00", "03-29 01:00"},
      {berlin, {30, 2}, "2026-10-24 12:00", "2026-10-26 00:00", "10-25 00:30"},
      {berlin, {30, 2}, "2026-10-25 00:45", "2026-10-27 00:00", "10-26 01:30"},
      {berlin, {30, 2}, "2026-10-25 01:15", "2026-10-27 00:00", "10-26 01:30"},
      {berlin, {50, 2}, "2026-10-25 00:45", "2026-10-26 00:00", "10-25 00:50"},
      {berlin, {0, 3}, "2026-10-25 00:30", "2026-10-26 00:00", "10-25 02:00"},
      {berlin, {0}, "2026-10-24 22:30", "2026-10-25 03:30", "10-24 23:00, 10-25 00:00, 10-25 02:00, 10-25 03:00"},
      {newYork, {30, 2}, "2026-03-07 00:00", "2026-03-10 00:00", "03-07 07:30, 03-09 06:30"},
      {newYork, {30, 1}, "2026-11-01 00:00", "2026-11-02 00:00", "11-01 05:30"},
      {newYork, {30, 1}, "2026-11-01 06:00", "2026-11-03 00:00", "11-02 06:30"},
      {lordHowe, {45, 1}, "2026-04-04 00:00", "2026-04-05 00:00", "04-04 14:45"},
      {lordHowe, {15, 2}, "2026-10-02 18:00", "2026-10-04 18:00", "10-04 15:15"},
      {lordHowe, {30, 2}, "2026-10-03 12:00", "2026-10-04 12:00", "10-03 15:30"},
      {casablanca, {30, 2}, "2026-02-14 12:00", "2026-02-15 12:00", "02-15 01:30"},
      {casablanca, {30, 2}, "2026-03-21 12:00", "2026-03-23 12:00", "03-23 01:30"},
      {"No/Where", {30, 2}, "2026-03-28 12:00", "2026-03-29 12:00", "03-29 02:30"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.zone) + " after " + row.after);
    EXPECT_EQ(runsOf(row, CalendarRule::asShown(row.interval)), row.runs);
    if (row.interval.hour) {
      EXPECT_EQ(runsOf(row, CalendarRule::asRun(row.interval)), row.runs);
    }
  }
}

TEST(ComingRunsTest, AsShownAMissingHourOrMinuteIsZero) {
  // minute, hour, day, weekday, month
  const Row rows[] = {
      {utc, {0, 12}, "2026-01-01 12:00", "2026-01-03 12:00", "01-02 12:00"},
      {utc, {{}, 12}, "2026-01-01 13:00", "2026-01-02 13:00", "01-02 12:00"},
      {utc, {0, 0, 31}, "2026-01-31 00:00", "2026-06-01 00:00", "03-31 00:00, 05-31 00:00"},
      {utc, {{}, {}, 99}, "2026-04-01 00:00", "2026-06-01 00:00", "05-31 00:00"},
      {utc, {{}, {}, -3}, "2026-04-01 00:00", "2026-05-02 00:00", "05-01 00:00"},
      {utc, {0, 0, 29, {}, 2}, "2026-01-01 00:00", "2033-01-01 00:00", "2028-02-29 00:00, 2032-02-29 00:00"},
      {utc, {0, 0, 31, {}, 14}, "2026-01-01 00:00", "2027-01-01 00:00", "12-31 00:00"},
      {utc, {0, 0, 31, {}, 0}, "2026-01-01 00:00", "2027-01-01 00:00", "01-31 00:00"},
      {utc, {0, 0, 31, {}, 4}, "2026-01-01 00:00", "2029-01-01 00:00", ""},
      {utc, {0, 0, 10, 1}, "2026-03-01 00:00", "2026-04-01 00:00", "03-10 00:00"},
      {utc, {{}, {}, {}, 1}, "2026-03-01 00:00", "2026-03-10 00:00", "03-02 00:00, 03-09 00:00"},
      {utc, {5, 6, {}, 0}, "2026-03-01 00:00", "2026-03-09 00:00", "03-01 06:05, 03-08 06:05"},
      {utc, {5, 6, {}, 6}, "2026-03-01 00:00", "2026-03-08 00:00", "03-07 06:05"},
      {utc, {5, 6, {}, 7}, "2026-03-01 00:00", "2026-03-09 00:00", "03-01 06:05, 03-08 06:05"},
      {utc, {5, 6, {}, -2}, "2026-03-01 00:00", "2026-03-08 00:00", "03-01 06:05"},
      {utc, {5, 6, {}, {}, 7}, "2026-03-01 00:00", "2026-03-02 00:00", "03-01 06:05"},
      {utc, {59}, "2026-02-28 22:30", "2026-03-01 01:00", "02-28 22:59, 02-28 23:59, 03-01 00:59"},
      {utc, {0, 24}, "2026-03-01 00:00", "2026-04-01 00:00", ""},
      {utc, {60}, "2026-03-01 00:00", "2026-04-01 00:00", ""},
      {utc, {-1, 64}, "2026-03-01 00:00", "2026-04-01 00:00", ""},
      {utc, {{}, {}, {}, {}, 3}, "2026-03-01 00:00", "2026-04-01 00:00", ""},
      {utc, {}, "2026-03-01 00:00", "2026-04-01 00:00", ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(runsOf(row, CalendarRule::asShown(row.interval)), row.runs) << "row " << &row - rows;
  }
}

TEST(ComingRunsTest, AsRunAMissingFieldMatchesAnything) {
  const Row rows[] = {
      {utc, {{}, 3}, "2026-01-01 03:57", "2026-01-02 03:01", "01-01 03:58, 01-01 03:59, 01-02 03:00"},
      {utc, {}, "2026-12-31 23:58", "2027-01-01 00:01", "12-31 23:59, 2027-01-01 00:00"},
      {utc, {{}, {}, {}, {}, 2}, "2026-01-31 23:58", "2026-02-01 00:02", "02-01 00:00, 02-01 00:01"},
      {utc, {0, 9, 10, 1}, "2026-03-01 00:00", "2026-03-11 00:00", "03-02 09:00, 03-09 09:00, 03-10 09:00"},
      {utc, {0, 9, {}, 7, 5}, "2026-01-01 00:00", "2026-05-11 00:00", "05-03 09:00, 05-10 09:00"},
      {utc, {0, 0, 32}, "2026-01-01 00:00", "2027-01-01 00:00", ""},
      {utc, {0, 0, 0}, "2026-01-01 00:00", "2027-01-01 00:00", ""},
      {utc, {0, 0, {}, 8}, "2026-01-01 00:00", "2027-01-01 00:00", ""},
      {utc, {0, 0, 1, {}, 13}, "2026-01-01 00:00", "2027-01-01 00:00", ""},
      {utc, {0, 0, 99, 0}, "2026-03-01 00:00", "2026-03-09 00:00", "03-08 00:00"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(runsOf(row, CalendarRule::asRun(row.interval)), row.runs) << "row " << &row - rows;
  }
}

TEST(ComingRunsTest, RunsAreStrictlyLaterToTheSecond) {
  const ZoneStretches zone(utc, at("2026-03-01 00:00"), at("2026-03-03 00:00"));
  const auto rule = CalendarRule::asShown({0, 12});
  const auto noon = at("2026-03-01 12:00");
  for (const int second : {-1, 0, 1}) {
    const auto after = noon + seconds(second);
    EXPECT_EQ(ComingRuns(rule, zone, after, zone.end()).next(), second < 0 ? noon : noon + days(1)) << second;
    int count = 0;
    forEachRun(rule, zone, after, noon + days(1), [&](sys_seconds) { ++count; });
    EXPECT_EQ(count, second < 0 ? 1 : 0) << second;
  }
}

// These moments were computed by stepping through every minute with the time zones of another program.
TEST(ComingRunsTest, RunsContinueAcrossTransitions) {
  constexpr const char* kolkata = "Asia/Kolkata";  // no changes
  constexpr const char* apia = "Pacific/Apia";     // had no 30 December 2011
  const Row rows[] = {
      {berlin, {30}, "2026-03-28 23:45", "2026-03-29 03:45", "03-29 00:30, 03-29 01:30, 03-29 02:30, 03-29 03:30"},
      {newYork, {0}, "2026-03-08 05:30", "2026-03-08 09:30", "03-08 06:00, 03-08 07:00, 03-08 08:00, 03-08 09:00"},
      {newYork, {30}, "2026-11-01 04:00", "2026-11-01 08:00", "11-01 04:30, 11-01 05:30, 11-01 07:30"},
      {lordHowe, {15}, "2026-10-03 13:30", "2026-10-03 17:30", "10-03 13:45, 10-03 14:45, 10-03 16:15, 10-03 17:15"},
      {lordHowe, {45}, "2026-04-04 13:00", "2026-04-04 17:00", "04-04 13:45, 04-04 14:45, 04-04 16:15"},
      {casablanca, {30}, "2026-02-15 00:00", "2026-02-15 05:00", "02-15 00:30, 02-15 01:30, 02-15 03:30, 02-15 04:30"},
      {casablanca, {30}, "2026-03-22 00:00", "2026-03-22 04:00", "03-22 00:30, 03-22 01:30, 03-22 02:30, 03-22 03:30"},
      {kolkata, {{}, {}, {}, 0}, "2026-03-20 00:00", "2026-04-06 00:00", "03-21 18:30, 03-28 18:30, 04-04 18:30"},
      {kolkata, {59, 23, 31}, "2026-03-01 00:00", "2026-06-01 00:00", "03-31 18:29, 05-31 18:29"},
      {apia, {0, 12}, "2011-12-28 00:00", "2011-12-31 00:00", "12-28 22:00, 12-29 22:00, 12-30 22:00"},
      {newYork, {{}, {}, 29, {}, 2}, "2028-02-28 00:00", "2028-03-02 00:00", "02-29 05:00"},
      {newYork, {30, 2, 8}, "2026-02-08 08:00", "2026-04-09 00:00", "04-08 06:30"},
      {berlin, {30, 2, {}, 0}, "2026-03-22 00:00", "2026-04-06 00:00", "03-22 01:30, 04-05 00:30"},
      {berlin, {30, 2, {}, 7}, "2026-10-18 12:00", "2026-11-02 00:00", "10-25 00:30, 11-01 01:30"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(runsOf(row, CalendarRule::asShown(row.interval)), row.runs) << row.zone << " after " << row.after;
  }
}

TEST(ComingRunsTest, TheFirstOfSeveralRulesIsTheEarliest) {
  const ZoneStretches zone(utc, at("2026-03-01 00:00"), at("2026-03-08 00:00"));
  const std::vector<CalendarRule> rules = {CalendarRule::asRun({0, 12}), CalendarRule::asRun({0, 6, {}, 2}),
                                           CalendarRule::asRun({0, 0, 31})};
  EXPECT_EQ(firstRun(rules, zone, at("2026-03-01 00:00")), at("2026-03-01 12:00"));
  EXPECT_EQ(firstRun(rules, zone, at("2026-03-02 12:00")), at("2026-03-03 06:00"));
  EXPECT_EQ(firstRun({}, zone, at("2026-03-02 12:00")), std::nullopt);
}

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

TEST(ZoneStretchesTest, LocalTimesAndMomentsAreConverted) {
  const struct {
    const char* zone;
    local_seconds local;
    sys_seconds moment;
    std::optional<local_seconds> localThen = {};  ///< if `local` is skipped
  } rows[] = {
      {"Europe/Berlin", local_days(2026y / 3 / 29) + 1h + 59min, sys_days(2026y / 3 / 29) + 59min},
      {"Europe/Berlin", local_days(2026y / 3 / 29) + 2h + 30min, sys_days(2026y / 3 / 29) + 1h,
       local_days(2026y / 3 / 29) + 3h},
      {"Europe/Berlin", local_days(2026y / 3 / 29) + 3h, sys_days(2026y / 3 / 29) + 1h},
      {"Europe/Berlin", local_days(2026y / 10 / 25) + 2h + 30min, sys_days(2026y / 10 / 25) + 30min},
      {"Europe/Berlin", local_days(2026y / 10 / 25) + 3h, sys_days(2026y / 10 / 25) + 2h},
      {"America/New_York", local_days(2026y / 11 / 1) + 1h, sys_days(2026y / 11 / 1) + 5h},
      {"Australia/Lord_Howe", local_days(2026y / 10 / 4) + 2h + 15min, sys_days(2026y / 10 / 3) + 15h + 30min,
       local_days(2026y / 10 / 4) + 2h + 30min},
      {"Asia/Kolkata", local_days(2026y / 10 / 4), sys_days(2026y / 10 / 3) + 18h + 30min},
  };
  for (const auto& row : rows) {
    const ZoneStretches zone(row.zone, row.moment - days(1), row.moment + days(1));
    EXPECT_EQ(zone.moment(row.local), row.moment) << &row - rows;
    EXPECT_EQ(zone.local(row.moment), row.localThen.value_or(row.local)) << &row - rows;
  }
}

}  // namespace
}  // namespace mirvel
