#include "core/lint/ScheduleLint.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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
constexpr std::array<std::string_view, 12> monthNames = {"January",   "February", "March",    "April",
                                                         "May",       "June",     "July",     "August",
                                                         "September", "October",  "November", "December"};

/// Reports numbers out of range; returns whether there were none.
bool checkRanges(const Interval& interval, const std::string& path, Findings& findings) {
  bool isGood = true;
  for (const CheckedNumber& field : checkedNumbers) {
    const auto& number = interval.*field.number;
    if (!number || (*number >= field.least && *number <= field.greatest)) continue;
    isGood = false;
    const std::string range = std::to_string(field.least) + " to " + std::to_string(field.greatest);
    // Beside a valid weekday an invalid day doesn't keep the job from running, and the other way round.
    const bool isDay = field.key == Interval::CodingKeys::Day || field.key == Interval::CodingKeys::Weekday;
    findings.error(propertylist::childPath(path, Interval::text(field.key)),
                   std::to_string(*number) + " is out of range (" + range + "); this " + (isDay ? "day" : "time") +
                       " never occurs");
  }
  return isGood;
}

/// Reports a date that no year has. With a weekday as well, either day is enough, so the job does run.
void checkDate(const Interval& interval, const std::string& path, Findings& findings) {
  if (!interval.day || !interval.month || interval.weekday) return;
  const auto month = static_cast<std::size_t>(*interval.month - 1);
  if (*interval.day <= longestMonths[month]) return;
  findings.error(propertylist::childPath(path, "Day"), std::string(monthNames[month]) + " has no day " +
                                                           std::to_string(*interval.day) + "; this date never occurs");
}

/// An absent key matches any value, which is easily overlooked.
void checkWildcards(const Interval& interval, const std::string& path, Findings& findings) {
  const bool hasDate = interval.day || interval.weekday || interval.month;
  if (!interval.minute && interval.hour) {
    findings.warning(path, "without Minute the job starts every minute of that hour");
  } else if (!interval.minute && hasDate) {
    findings.warning(path, interval.month && !interval.day && !interval.weekday
                               ? "without Hour and Minute the job starts every minute of that month"
                               : "without Hour and Minute the job starts every minute of that day");
  } else if (!interval.minute) {
    findings.warning(path, "without Hour and Minute the job starts every minute");
  } else if (!interval.hour && hasDate) {
    findings.warning(path, "without Hour the job starts every hour at that minute");
  }
}

void checkInterval(const Interval& interval, const std::string& path, Findings& findings) {
  if (!checkRanges(interval, path, findings)) return;
  checkDate(interval, path, findings);
  checkWildcards(interval, path, findings);
}

void checkStartInterval(const jobfile::Plist& record, Findings& findings) {
  constexpr std::int64_t usualThrottle = 10;
  if (!record.startInterval) return;
  const std::int64_t seconds = *record.startInterval;
  if (seconds <= 0) {
    findings.error("StartInterval", "launchd ignores an interval of " + std::to_string(seconds) + " seconds");
  } else if (seconds < usualThrottle && !record.throttleInterval) {
    findings.warning("StartInterval",
                     "launchd starts a job at most every 10 seconds, unless ThrottleInterval is smaller");
  }
}

void checkNice(const jobfile::Plist& record, Findings& findings) {
  if (!record.nice || (*record.nice >= -20 && *record.nice <= 20)) return;
  findings.warning("Nice", std::to_string(*record.nice) + " is out of range (-20 to 20)");
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
