#include "core/explain/RuleText.h"

#include <gtest/gtest.h>

#include "core/locale/Dates.h"

namespace mirvel::explain {
namespace {

using namespace Scheduled;

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
