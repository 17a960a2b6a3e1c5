#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "core/jobfile/StartCalendarInterval.h"
#include "core/schedule/Week.h"

/// A job's schedule as rules that a person reads: the six types of rule, made from what the job file says. The other
/// direction is in AppliedRules.h. The two aren't inverse: a rule can't tell all that the file can.
namespace mirvel::Scheduled {

/// The types of rule, in the order of `ScheduledType`.
enum class Kind { repeatInterval, everyHour, everyDay, dayOfWeek, dayOfMonth, dayOfYear };

/// A time of day: that time on 1 January 2000, in no time zone (see `Date::timeOfDay`).
using Time = std::chrono::local_seconds;

struct RepeatInterval {
  static constexpr Kind kind = Kind::repeatInterval;
  enum class Unit { seconds, minutes, hours, days };

  std::int64_t interval = 0;
  Unit unit = Unit::seconds;

  bool operator==(const RepeatInterval&) const = default;
};

struct EveryHour {
  static constexpr Kind kind = Kind::everyHour;

  int minute = 0;  ///< 0 to 59

  bool operator==(const EveryHour&) const = default;
};

struct EveryDay {
  static constexpr Kind kind = Kind::everyDay;

  Time time = {};

  bool operator==(const EveryDay&) const = default;
};

struct DayOfWeek {
  static constexpr Kind kind = Kind::dayOfWeek;
  static constexpr int weekdays = 7;
  static constexpr int weekends = 8;

  int day = 0;  ///< 0 (Sunday) to 6, or one of the two groups of days
  Time time = {};

  bool operator==(const DayOfWeek&) const = default;
};

struct DayOfMonth {
  static constexpr Kind kind = Kind::dayOfMonth;

  int day = 0;  ///< 0 is the 1st, 30 the 31st
  Time time = {};

  bool operator==(const DayOfMonth&) const = default;
};

struct DayOfYear {
  static constexpr Kind kind = Kind::dayOfYear;

  int month = 0;  ///< 0 is January
  int day = 0;    ///< 0 is the 1st, 30 the 31st
  Time time = {};

  bool operator==(const DayOfYear&) const = default;
};

/// A rule of any type; its index is its `Kind`.
using ScheduledType = std::variant<RepeatInterval, EveryHour, EveryDay, DayOfWeek, DayOfMonth, DayOfYear>;

Kind kindOf(const ScheduledType& rule);

/// The rules of a job: the repeat rule, then the others in the order of the intervals, then the groups of days, then
/// the single days of the week. Numbers out of range are clamped or read as 0; a month without a day and a weekday
/// beside a day are left out. Never fails.
std::vector<ScheduledType> rules(std::optional<std::int64_t> startInterval,
                                 const std::optional<jobfile::StartCalendarInterval>& startCalendarInterval,
                                 const Week& week = Week::current());

/// The seconds in the largest unit that divides them: 2 `hours` of 7200, 90 `seconds` of 90, 0 `days` of 0.
RepeatInterval splitInterval(std::int64_t seconds);

}  // namespace mirvel::Scheduled

/// The rules of a job together with what of its file they were made from, which can be more than they tell.
namespace mirvel::Scheduled {

/// What of a job file a rule stands for: one of the two.
struct FileSource {
  std::optional<std::int64_t> startInterval = {};
  std::vector<jobfile::StartCalendarInterval::Interval> intervals = {};  ///< several of a group of days

  bool operator==(const FileSource&) const = default;
};

struct FileRule {
  ScheduledType rule;
  FileSource source = {};
};

/// As `rules`, each with its source.
std::vector<FileRule> fileRules(std::optional<std::int64_t> startInterval,
                                const std::optional<jobfile::StartCalendarInterval>& startCalendarInterval,
                                const Week& week = Week::current());

/// The interval that says no more than its rule does.
jobfile::StartCalendarInterval::Interval shownInterval(const jobfile::StartCalendarInterval::Interval& interval);

/// The rule that shows the most of an interval.
ScheduledType ruleOf(const jobfile::StartCalendarInterval::Interval& interval);

/// Whether its rule tells when launchd runs it.
bool isTold(const jobfile::StartCalendarInterval::Interval& interval);

}  // namespace mirvel::Scheduled
