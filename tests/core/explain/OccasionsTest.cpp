#include "core/explain/Occasions.h"

#include <gtest/gtest.h>

#include "core/jobfile/JobFile.h"

namespace mirvel::explain {
namespace {

using jobfile::Dict;
using jobfile::List;

TEST(OccasionsTest, EachOccasionYieldsASentence) {
  const std::string byHand = "Only when it is started by hand";
  const std::string always = "Always: it is started again whenever it ends";
  const struct {
    Dict file;
    std::vector<std::string> sentences;
  } table[] = {
      {{}, {byHand}},
      {{{"RunAtLoad", false}, {"KeepAlive", false}}, {byHand}},
      {{{"Disabled", true}}, {"Not now: the file disables the job", byHand}},
      {{{"RunAtLoad", true}}, {"When it is loaded, that is, at login or at startup"}},
      {{{"KeepAlive", true}}, {always}},
      {{{"OnDemand", false}}, {always}},
      {{{"KeepAlive", Dict{{"Crashed", true}}}, {"OnDemand", false}}, {always}},
      {{{"KeepAlive", Dict{{"Crashed", true}, {"SuccessfulExit", false}, {"AfterInitialDemand", true}}}},
       {"Again when it ends with a failure", "Again when it crashes",
        "It is kept running only once it has been asked for"}},
      {{{"KeepAlive",
         Dict{{"PathState", Dict{{"/a", true}, {"/b", false}}}, {"OtherJobEnabled", Dict{{"x", true}, {"y", false}}}}}},
       {"While /a exists", "While /b doesn’t exist", "While the job x is loaded", "While the job y isn’t loaded"}},
      {{{"StartCalendarInterval",
         List{Dict{{"Hour", 9}, {"Minute", 0}, {"Month", 10}, {"Weekday", 1}},
              Dict{{"Hour", 9}, {"Minute", 0}, {"Month", 12}, {"Weekday", 1}}, Dict{{"Hour", 8}, {"Minute", 0}},
              Dict{{"Hour", 7}, {"Minute", 5}, {"Month", 2}}}}},
       {"Every day at 08:00", "Every Monday at 09:00, only in October, December",
        "Every day at 07:05, only in February"}},
      {{{"StartOnMount", true}, {"StartInterval", 7200}}, {"Every 2 hours", "When a volume is mounted"}},
      {{{"WatchPaths", List{"/a", "/b"}}, {"QueueDirectories", List{"/q"}}},
       {"When /a changes", "When /b changes", "While there is something in /q"}},
      {{{"MachServices", Dict{{"m", true}, {"n", Dict{}}}}, {"Sockets", Dict{{"s", Dict{}}}}},
       {"When something comes in at the socket s", "When another program uses the service m",
        "When another program uses the service n"}},
      {{{"LaunchEvents", Dict{{"com.apple.notifyd.matching", Dict{}}}}},
       {"When an event of com.apple.notifyd.matching occurs"}},
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
