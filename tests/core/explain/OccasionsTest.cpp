#include "core/explain/Occasions.h"

#include <gtest/gtest.h>

#include "core/jobfile/JobFile.h"

namespace mirvel::explain {
namespace {

using jobfile::Dict;
using jobfile::List;

TEST(OccasionsTest, EachOccasionYieldsASentence) {
  const std::string byHand = "Only when it is started manually";
  const std::string always = "Continuously, restarting whenever it exits";
  const struct {
    Dict file;
    std::vector<std::string> sentences;
  } table[] = {
      {{}, {byHand}},
      {{{"RunAtLoad", false}, {"KeepAlive", false}}, {byHand}},
      {{{"Disabled", true}}, {"Not at present, because the job is disabled in its file", byHand}},
      {{{"RunAtLoad", true}}, {"When it is loaded (at login or startup)"}},
      {{{"KeepAlive", true}}, {always}},
      {{{"OnDemand", false}}, {always}},
      {{{"KeepAlive", Dict{{"Crashed", true}}}, {"OnDemand", false}}, {always}},
      {{{"KeepAlive", Dict{{"Crashed", true}, {"SuccessfulExit", false}, {"AfterInitialDemand", true}}}},
       {"Again when it exits with an error", "Again when it crashes",
        "Kept running only after it was first started on demand"}},
      {{{"KeepAlive",
         Dict{{"PathState", Dict{{"/a", true}, {"/b", false}}}, {"OtherJobEnabled", Dict{{"x", true}, {"y", false}}}}}},
       {"While /a exists", "While /b doesn’t exist", "While the job x is loaded", "While the job y isn’t loaded"}},
      {{{"StartCalendarInterval",
         List{Dict{{"Hour", 9}, {"Minute", 0}, {"Month", 10}, {"Weekday", 1}},
              Dict{{"Hour", 9}, {"Minute", 0}, {"Month", 12}, {"Weekday", 1}}, Dict{{"Hour", 8}, {"Minute", 0}},
              Dict{{"Hour", 7}, {"Minute", 5}, {"Month", 2}}}}},
       {"Every day at 08:00", "Every Monday at 09:00, only in October, December",
        "Every day at 07:05, only in February"}},
      {{{"StartCalendarInterval",
         List{Dict{{"Hour", 9}}, Dict{{"Hour", 9}, {"Month", 10}}, Dict{{"Hour", 8}, {"Minute", 0}},
              Dict{{"Minute", 0}, {"Hour", 9}, {"Month", 13}}}}},
       {"Every day at 09:00", "In the job file: Hour 9", "Every day at 09:00", "In the job file: Month 10, Hour 9",
        "Every day at 08:00", "Every day at 09:00", "In the job file: Month 13, Hour 9, Minute 0"}},
      {{{"StartInterval", 0}}, {byHand}},
      {{{"StartOnMount", true}, {"StartInterval", 7200}}, {"Every 2 hours", "When a volume is mounted"}},
      {{{"WatchPaths", List{"/a", "/b"}}, {"QueueDirectories", List{"/q"}}},
       {"When /a changes", "When /b changes", "While /q isn’t empty"}},
      {{{"MachServices", Dict{{"m", true}, {"n", Dict{}}}}, {"Sockets", Dict{{"s", Dict{}}}}},
       {"When a request arrives at the socket s", "When another program uses the service m",
        "When another program uses the service n"}},
      {{{"LaunchEvents", Dict{{"com.apple.notifyd.matching", Dict{}}}}},
       {"When com.apple.notifyd.matching reports an event"}},
  };
  const Localize english("en");
  for (const auto& row : table) {
    Dict file = row.file;
    file.set("Label", "job");
    EXPECT_EQ(occasions(jobfile::decoded(file), english), row.sentences)
        << testing::PrintToString(propertylist::Value(file));
  }
}

}  // namespace
}  // namespace mirvel::explain
