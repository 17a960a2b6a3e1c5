#include "core/explain/Occasions.h"

#include <gtest/gtest.h>

#include "core/explain/RuleText.h"
#include "core/jobfile/JobFile.h"
#include "core/locale/Dates.h"

namespace mirvel::explain {
namespace {

using namespace Scheduled;
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

TEST(RuleTextTest, RulesAreSentences) {
  using Unit = RepeatInterval::Unit;
  const struct {
    ScheduledType rule;
    const char* english;
    const char* german;
  } table[] = {
      {RepeatInterval{2, Unit::hours}, "Every 2 hours", "Every 2 Stunden"},
      {RepeatInterval{90, Unit::seconds}, "Every 90 seconds", "Every 90 Sekunden"},
      {RepeatInterval{1, Unit::seconds}, "Every second", "Every second"},
      {RepeatInterval{1, Unit::minutes}, "Every minute", "Every minute"},
      {RepeatInterval{1, Unit::hours}, "Every hour", "Every hour"},
      {RepeatInterval{1, Unit::days}, "Every 24 hours", "Every 24 hours"},
      {RepeatInterval{10, Unit::days}, "Every 10 days", "Every 10 Tage"},
      {EveryHour{30}, "Every hour at minute 30", "Every hour at minute 30"},
      {EveryDay{Date::timeOfDay(9, 5)}, "Every day at 09:05", "Every day at 09:05"},
      {DayOfWeek{1, Date::timeOfDay(21, 0)}, "Every Monday at 21:00", "Every Montag at 21:00"},
      {DayOfWeek{0, Date::timeOfDay(0, 0)}, "Every Sunday at 00:00", "Every Sonntag at 00:00"},
      {DayOfWeek{7, Date::timeOfDay(9, 0)}, "Every weekday at 09:00", "Every weekday at 09:00"},
      {DayOfWeek{8, Date::timeOfDay(9, 0)}, "On weekends at 09:00", "On weekends at 09:00"},
      {DayOfMonth{0, Date::timeOfDay(0, 0)}, "On the 1st of every month at 00:00", "On the 1. of every month at 00:00"},
      {DayOfMonth{21, Date::timeOfDay(0, 0)}, "On the 22nd of every month at 00:00",
       "On the 22. of every month at 00:00"},
      {DayOfYear{1, 28, Date::timeOfDay(12, 0)}, "Every year on 29 February at 12:00",
       "Every year on 29 Februar at 12:00"},
      {DayOfYear{1, 30, Date::timeOfDay(12, 0)}, "Every year on 31 February at 12:00",
       "Every year on 31 Februar at 12:00"},
  };
  // Sentences aren't translated without catalogues, but names, numbers and ordinals follow the locale.
  const Localize english("en");
  const Localize german("de");
  for (const auto& row : table) {
    EXPECT_EQ(ruleText(row.rule, english), row.english);
    EXPECT_EQ(ruleText(row.rule, german), row.german);
  }
}

TEST(RuleTextTest, TimesCanFollowTheTimeLocale) {
  const ScheduledType rule = EveryDay{Date::timeOfDay(21, 5)};
  const std::string english = ruleText(rule, Localize("en_US"), TimeForm::OfTheLocale);
  EXPECT_TRUE(english.starts_with("Every day at 9:05") && english.ends_with("PM")) << english;
  EXPECT_EQ(ruleText(rule, Localize("de"), TimeForm::OfTheLocale), "Every day at 21:05");
  EXPECT_EQ(ruleText(rule, Localize("en_US", {}, "de_DE"), TimeForm::OfTheLocale), "Every day at 21:05");
  const ScheduledType onMonday = DayOfWeek{1, Date::timeOfDay(21, 5)};
  EXPECT_EQ(ruleText(onMonday, Localize("en_US", {}, "de_DE"), TimeForm::OfTheLocale), "Every Monday at 21:05")
      << "names are in the language of the sentence";
}

}  // namespace
}  // namespace mirvel::explain
