#pragma once

#include <string>

#include "core/locale/Localize.h"

namespace mirvel {

/// The texts of rules and times.
class ScheduleTexts : public Texts {
 public:
  using Texts::Texts;

  std::string dayOfYear() const { return text("Day of Year"); }
  std::string enterAMinute() const { return text("Enter a minute from 0 to 59."); }
  std::string enterASmallerNumber() const { return text("Enter a smaller number."); }
  std::string enterAtLeastTenSeconds() const { return text("Enter at least 10 seconds."); }
  std::string everyDay() const { return text("Every Day"); }
  std::string everyHour() const { return text("Every Hour"); }
  std::string everyMinute() const { return text("Every minute"); }
  std::string fromWhenItIsLoaded(const std::string& rule) const {
    return format("%@, counted from when the job is loaded", {rule});
  }
  std::string inTheJobFile(const std::string& entries) const { return format("In the job file: %@", {entries}); }
  std::string itWillNeverRun() const { return text("It will never run on this schedule"); }
  std::string nextRun(const std::string& moment) const { return format("Next: %@", {moment}); }
  std::string nextRuns(const std::string& first, const std::string& second) const {
    return format("Next: %1$@, then %2$@", {first, second});
  }
  std::string onlyOneRepeatInterval() const {
    return text("A job can have only one repeat interval. Remove this rule.");
  }
  std::string ruleCantBeSaved(const std::string& number, const std::string& kind) const {
    return format("Rule %1$@, “%2$@”, can’t be saved", {number, kind});
  }
  std::string weekdays() const { return text("Weekdays"); }
  std::string weekends() const { return text("Weekends"); }
};

}  // namespace mirvel
