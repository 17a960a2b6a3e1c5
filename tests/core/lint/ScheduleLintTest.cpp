#include <gtest/gtest.h>

#include "core/lint/LintedJob.h"

namespace mirvel::lint {
namespace {

std::vector<std::string> remarksOn(const Dict& interval) {
  return remarks(job({{"StartCalendarInterval", interval}}));
}

TEST(ScheduleLintTest, TimesThatNeverComeAreErrors) {
  const std::string at = "error: StartCalendarInterval.";
  const struct {
    Dict interval;
    std::vector<std::string> remarks;
  } table[] = {
      {{{"Minute", 0}, {"Hour", 0}}, {}},
      {{{"Minute", 59}, {"Hour", 23}, {"Weekday", 7}}, {}},
      {{{"Minute", 0}, {"Hour", 24}}, {at + "Hour: 24 is outside 0 to 23: such a time never comes"}},
      {{{"Minute", 60}, {"Hour", 0}}, {at + "Minute: 60 is outside 0 to 59: such a time never comes"}},
      {{{"Minute", -1}}, {at + "Minute: -1 is outside 0 to 59: such a time never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 0}}, {at + "Day: 0 is outside 1 to 31: such a time never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 32}}, {at + "Day: 32 is outside 1 to 31: such a time never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Weekday", 8}}, {at + "Weekday: 8 is outside 0 to 7: such a time never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 1}, {"Month", 13}},
       {at + "Month: 13 is outside 1 to 12: such a time never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 29}, {"Month", 2}}, {}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 30}, {"Month", 2}}, {at + "Day: February has no day 30: it never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 31}, {"Month", 11}}, {at + "Day: November has no day 31: it never comes"}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 31}, {"Month", 12}}, {}},
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 31}}, {}},
      // A weekday beside the day counts by itself.
      {{{"Minute", 0}, {"Hour", 0}, {"Day", 30}, {"Month", 2}, {"Weekday", 1}}, {}},
  };
  for (const auto& row : table) {
    EXPECT_EQ(remarksOn(row.interval), row.remarks) << testing::PrintToString(propertylist::Value(row.interval));
  }
}

TEST(ScheduleLintTest, MissingMinutesAndHoursAreTold) {
  const std::string at = "warning: StartCalendarInterval: ";
  const struct {
    Dict interval;
    std::string remark;
  } table[] = {
      {{{"Hour", 10}}, at + "without Minute the job is started every minute of that hour"},
      {{{"Hour", 10}, {"Weekday", 1}}, at + "without Minute the job is started every minute of that hour"},
      {{{"Day", 8}}, at + "without Hour and Minute the job is started every minute of that day"},
      {{{"Month", 2}, {"Weekday", 1}}, at + "without Hour and Minute the job is started every minute of that day"},
      {{{"Month", 2}}, at + "without Hour and Minute the job is started every minute of that month"},
      {{}, at + "without Hour and Minute the job is started every minute"},
      {{{"Minute", 5}, {"Weekday", 1}}, at + "without Hour the job is started every hour at that minute"},
      {{{"Minute", 5}}, ""},
  };
  for (const auto& row : table) {
    const auto expected = row.remark.empty() ? std::vector<std::string>{} : std::vector{row.remark};
    EXPECT_EQ(remarksOn(row.interval), expected) << row.remark;
  }
}

TEST(ScheduleLintTest, IntervalsOfSecondsMustMakeSense) {
  const Row table[] = {
      {{{"StartInterval", 10}}, {}},
      {{{"StartInterval", 0}}, {"error: StartInterval: launchd takes no account of an interval of 0 seconds"}},
      {{{"StartInterval", -5}}, {"error: StartInterval: launchd takes no account of an interval of -5 seconds"}},
      {{{"StartInterval", 9}},
       {"warning: StartInterval: launchd starts a job every 10 seconds at most, unless ThrottleInterval is less"}},
      {{{"StartInterval", 9}, {"ThrottleInterval", 5}}, {}},
      {{{"Nice", 20}}, {}},
      {{{"Nice", -21}}, {"warning: Nice: -21 is outside -20 to 20"}},
      {{{"StartCalendarInterval", List{Dict{{"Minute", 0}}, Dict{{"Minute", 60}}}}},
       {"error: StartCalendarInterval[1].Minute: 60 is outside 0 to 59: such a time never comes"}},
  };
  for (const Row& row : table) {
    EXPECT_EQ(remarks(job(row.entries)), row.remarks) << testing::PrintToString(propertylist::Value(job(row.entries)));
  }
}

TEST(ScheduleLintTest, AJobThatNothingStartsIsTold) {
  const std::string idle = "warning: nothing in the file ever starts the job; it runs only when it is started by hand";
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
    EXPECT_EQ(remarks(file), row.isStarted ? std::vector<std::string>{} : std::vector{idle})
        << testing::PrintToString(propertylist::Value(file));
  }
  // Of a value that was refused nobody knows what was meant.
  EXPECT_EQ(remarks(job({{"RunAtLoad", "yes"}})).size(), 1U);
}

}  // namespace
}  // namespace mirvel::lint
