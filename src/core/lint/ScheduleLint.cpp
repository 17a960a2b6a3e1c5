#include "core/lint/ScheduleLint.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/locale/Localize.h"

namespace mirvel::lint {

namespace {

using Interval = jobfile::StartCalendarInterval::Interval;

struct CheckedNumber {
  std::optional<std::int64_t> Interval::*number;
  Interval::CodingKeys key;
  std::int64_t least;
  std::int64_t greatest;
};

constexpr std::array<CheckedNumber, 5> checkedNumbers = {{
    {&Interval::minute, Interval::CodingKeys::Minute, 0, 59},
    {&Interval::hour, Interval::CodingKeys::Hour, 0, 23},
    {&Interval::day, Interval::CodingKeys::Day, 1, 31},
    {&Interval::weekday, Interval::CodingKeys::Weekday, 0, 7},
    {&Interval::month, Interval::CodingKeys::Month, 1, 12},
}};

constexpr std::array<int, 12> longestMonths = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
/// For the months with less than 31 days.
constexpr std::array<const char*, 12> shortMonths = {nullptr,
                                                     translatable("February has no day %@; this date never occurs"),
                                                     nullptr,
                                                     translatable("April has no day %@; this date never occurs"),
                                                     nullptr,
                                                     translatable("June has no day %@; this date never occurs"),
                                                     nullptr,
                                                     nullptr,
                                                     translatable("September has no day %@; this date never occurs"),
                                                     nullptr,
                                                     translatable("November has no day %@; this date never occurs"),
                                                     nullptr};

/// Reports numbers out of range; returns whether there were none.
bool checkRanges(const Interval& interval, const std::string& path, Findings& findings) {
  bool isGood = true;
  for (const CheckedNumber& field : checkedNumbers) {
    const auto& number = interval.*field.number;
    if (!number || (*number >= field.least && *number <= field.greatest)) continue;
    isGood = false;
    // Beside a valid weekday an invalid day doesn't keep the job from running, and the other way round.
    const bool isDay = field.key == Interval::CodingKeys::Day || field.key == Interval::CodingKeys::Weekday;
    const char* const format = isDay ? translatable("%@ is out of range (%@ to %@); this day never occurs")
                                     : translatable("%@ is out of range (%@ to %@); this time never occurs");
    findings.error(
        propertylist::childPath(path, Interval::text(field.key)),
        clause(format, {std::to_string(*number), std::to_string(field.least), std::to_string(field.greatest)}));
  }
  return isGood;
}

/// Reports a date that no year has. With a weekday as well, either day is enough, so the job does run.
void checkDate(const Interval& interval, const std::string& path, Findings& findings) {
  if (!interval.day || !interval.month || interval.weekday) return;
  const auto month = static_cast<std::size_t>(*interval.month - 1);
  if (*interval.day <= longestMonths[month]) return;
  findings.error(propertylist::childPath(path, "Day"), clause(shortMonths[month], {std::to_string(*interval.day)}));
}

/// An absent key matches any value, which is easily overlooked.
void checkWildcards(const Interval& interval, const std::string& path, Findings& findings) {
  const bool hasDate = interval.day || interval.weekday || interval.month;
  if (!interval.minute && interval.hour) {
    findings.warning(path, clause("without Minute the job starts every minute of that hour"));
  } else if (!interval.minute && hasDate) {
    findings.warning(path, interval.month && !interval.day && !interval.weekday
                               ? clause("without Hour and Minute the job starts every minute of that month")
                               : clause("without Hour and Minute the job starts every minute of that day"));
  } else if (!interval.minute) {
    findings.warning(path, clause("without Hour and Minute the job starts every minute"));
  } else if (!interval.hour && hasDate) {
    findings.warning(path, clause("without Hour the job starts every hour at that minute"));
  }
}

void checkInterval(const Interval& interval, const std::string& path, Findings& findings) {
  if (!checkRanges(interval, path, findings)) return;
  checkDate(interval, path, findings);
  checkWildcards(interval, path, findings);
}

void checkStartInterval(const jobfile::Plist& record, Findings& findings) {
  constexpr std::int64_t usualThrottle = 10;
  constexpr std::int64_t rarelyMeant = 5;
  const std::string key = "StartInterval";
  if (!record.startInterval) return;
  const std::int64_t seconds = *record.startInterval;
  const std::int64_t throttle = record.throttleInterval.value_or(usualThrottle);
  if (seconds <= 0) {
    findings.error(key, clause("launchd ignores an interval of %@ seconds", {std::to_string(seconds)}));
  } else if (seconds < throttle && !record.throttleInterval) {
    findings.warning(key, clause("launchd starts a job at most every 10 seconds, unless ThrottleInterval is smaller"));
  } else if (seconds < throttle) {
    findings.warning(key, clause("because of ThrottleInterval, launchd starts the job at most every %@ seconds",
                                 {std::to_string(throttle)}));
  } else if (seconds == 1) {
    findings.warning(key, clause("the job starts every second"));
  } else if (seconds < rarelyMeant) {
    findings.warning(key, clause("the job starts every %@ seconds", {std::to_string(seconds)}));
  }
}

void checkNice(const jobfile::Plist& record, Findings& findings) {
  if (!record.nice || (*record.nice >= -20 && *record.nice <= 20)) return;
  findings.warning("Nice", clause("%@ is out of range (%@ to %@)", {std::to_string(*record.nice), "-20", "20"}));
}

}  // namespace

void checkSchedule(const Subject& subject, Findings& findings) {
  checkStartInterval(subject.record, findings);
  checkNice(subject.record, findings);
  const auto& calendar = subject.record.startCalendarInterval;
  if (!calendar) return;
  const std::string path = "StartCalendarInterval";
  for (std::size_t i = 0; i < calendar->intervals.size(); ++i) {
    checkInterval(calendar->intervals[i], calendar->singleValue ? path : propertylist::childPath(path, i), findings);
  }
}

}  // namespace mirvel::lint
