#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"

namespace mirvel::lint {
namespace {

TEST(ScheduleLintTest, TimesThatNeverOccurAreErrors) {
  const std::string at = "error: StartCalendarInterval.";
  const struct {
    Dict interval;
    std::vector<std::string> findings;
  } table[] = {
      {{{"Minute", 0}, {"Hour", 0}}, {}},
      {{{"Minute", 59}, {"Hour", 23}, {"Weekday", 7}}, {}},
      {{{"Minute", 0}, {"Hour", 24}}, {at + "Hour: 24 is out of range (0 to 23); this time never occurs"}},
      {{{"Minute", 60}, {"Hour", 0}}, {at + "Minute: 60 is out of range (0 to 59); this time never occurs"}},
      {{{"Minute", -1}}, {at + "Minute: -1 is out of range (0 to 59); this time never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 0}}, {at + "Day: 0 is out of range (1 to 31); this day never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 32}}, {at + "Day: 32 is out of range (1 to 31); this day never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Weekday", 8}},
       {at + "Weekday: 8 is out of range (0 to 7); this day never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 99}, {"Weekday", 0}},
       {at + "Day: 99 is out of range (1 to 31); this day never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 1}, {"Month", 13}},
       {at + "Month: 13 is out of range (1 to 12); this time never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 29}, {"Month", 2}}, {}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 30}, {"Month", 2}},
       {at + "Day: February has no day 30; this date never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 31}, {"Month", 11}},
       {at + "Day: November has no day 31; this date never occurs"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 31}, {"Month", 12}}, {}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 31}}, {}},
      // Either the day or the weekday is enough.
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 30}, {"Month", 2}, {"Weekday", 1}}, {}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(findingsOf(job({{"StartCalendarInterval", row.interval}})), row.findings)
        << testing::PrintToString(propertylist::Value(row.interval));
  }
}

TEST(ScheduleLintTest, MissingMinutesAndHoursAreReported) {
  const std::string at = "warning: StartCalendarInterval: ";
  const struct {
    Dict interval;
    std::string finding;
  } table[] = {
      {{{"Hour", 10}}, at + "without Minute the job starts every minute of that hour"},
      {{{"Hour", 10}, {"Weekday", 1}}, at + "without Minute the job starts every minute of that hour"},
      {{{"Day", 8}}, at + "without Hour and Minute the job starts every minute of that day"},
      {{{"Month", 2}, {"Weekday", 1}}, at + "without Hour and Minute the job starts every minute of that day"},
      {{{"Month", 2}}, at + "without Hour and Minute the job starts every minute of that month"},
      {{}, at + "without Hour and Minute the job starts every minute"},
      {{{"Minute", 5}, {"Weekday", 1}}, at + "without Hour the job starts every hour at that minute"},
      {{{"Minute", 5}}, ""},
  };
  for (const auto& row : table) {
    const auto expected = row.finding.empty() ? std::vector<std::string>{} : std::vector{row.finding};
    EXPECT_EQ(findingsOf(job({{"StartCalendarInterval", row.interval}})), expected) << row.finding;
  }
}

TEST(ScheduleLintTest, NumbersOutOfRangeAreReported) {
  expectFindings({
      {{{"StartInterval", 10}}, {}},
      {{{"StartInterval", 0}}, {"error: StartInterval: launchd ignores an interval of 0 seconds"}},
      {{{"StartInterval", -5}}, {"error: StartInterval: launchd ignores an interval of -5 seconds"}},
      {{{"StartInterval", 9}},
       {"warning: StartInterval: launchd starts a job at most every 10 seconds, unless ThrottleInterval is smaller"}},
      {{{"StartInterval", 9}, {"ThrottleInterval", 5}}, {}},
      {{{"StartInterval", 5}, {"ThrottleInterval", 5}}, {}},
      {{{"StartInterval", 4}, {"ThrottleInterval", 1}}, {"warning: StartInterval: the job starts every 4 seconds"}},
      {{{"StartInterval", 1}, {"ThrottleInterval", 0}}, {"warning: StartInterval: the job starts every second"}},
      {{{"StartInterval", 20}, {"ThrottleInterval", 30}},
       {"warning: StartInterval: because of ThrottleInterval, launchd starts the job at most every 30 seconds"}},
      {{{"Nice", 20}}, {}},
      {{{"Nice", -21}}, {"warning: Nice: -21 is out of range (-20 to 20)"}},
      {{{"StartCalendarInterval", List{Dict{{"Minute", 0}}, Dict{{"Minute", 60}}}}},
       {"error: StartCalendarInterval[1].Minute: 60 is out of range (0 to 59); this time never occurs"}},
  });
}

TEST(ScheduleLintTest, AJobThatNoKeyStartsIsReported) {
  const std::string idle = "warning: no key of the file starts the job; it runs only when started manually";
  const struct {
    std::vector<std::pair<std::string, propertylist::Value>> entries;
    bool isStarted;
  } table[] = {
      {{}, false},
      {{{"RunAtLoad", false}, {"KeepAlive", false}, {"StartOnMount", false}}, false},
      {{{"KeepAlive", true}}, true},
      {{{"KeepAlive", Dict{{"Crashed", true}}}}, true},
      {{{"StartOnMount", true}}, true},
      {{{"StartInterval", 60}}, true},
      {{{"StartCalendarInterval", Dict{{"Minute", 0}}}}, true},
      {{{"WatchPaths", List{"/a"}}}, true},
      {{{"QueueDirectories", List{"/a"}}}, true},
      {{{"Sockets", Dict{{"A", Dict{}}}}}, true},
      {{{"MachServices", Dict{{"a", true}}}}, true},
      {{{"LaunchEvents", Dict{{"a", Dict{}}}}}, true},
  };
  for (const auto& row : table) {
    Dict file = job(row.entries);
    if (!file.find("KeepAlive") || row.isStarted) file.remove("RunAtLoad");
    EXPECT_EQ(findingsOf(file), row.isStarted ? std::vector<std::string>{} : std::vector{idle})
        << testing::PrintToString(propertylist::Value(file));
  }
  // A rejected value may have been meant to start the job.
  EXPECT_EQ(findingsOf(job({{"RunAtLoad", "yes"}})).size(), 1U);
}

}  // namespace
}  // namespace mirvel::lint
