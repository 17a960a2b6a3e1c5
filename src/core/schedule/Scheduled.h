#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "core/jobfile/StartCalendarInterval.h"
#include "core/schedule/Week.h"

/// A job's schedule as rules for people to read and edit: six types of rule, derived from the job file. AppliedRules.h
/// converts rules back. The conversions aren't inverse, since job files can express more than rules.
namespace mirvel::Scheduled {

/// The type of a rule; the index in `ScheduledType`.
enum class Kind { repeatInterval, everyHour, everyDay, dayOfWeek, dayOfMonth, dayOfYear };

/// A time of day, represented as that time on 1 January 2000, without a time zone (see `Date::timeOfDay`).
using Time = std::chrono::local_seconds;

/// Runs at a fixed interval, counted from when the job is loaded (StartInterval).
struct RepeatInterval {
  static constexpr Kind kind = Kind::repeatInterval;
  enum class Unit { seconds, minutes, hours, days };

  std::int64_t interval = 0;
  Unit unit = Unit::seconds;

  bool operator==(const RepeatInterval&) const = default;
};

/// Runs every hour at that minute.
struct EveryHour {
  static constexpr Kind kind = Kind::everyHour;

  int minute = 0;  ///< 0 to 59

  bool operator==(const EveryHour&) const = default;
};

/// Runs every day at that time.
struct EveryDay {
  static constexpr Kind kind = Kind::everyDay;

  Time time = {};

  bool operator==(const EveryDay&) const = default;
};

/// Runs on a day of the week, or on each day of a group, at that time.
struct DayOfWeek {
  static constexpr Kind kind = Kind::dayOfWeek;
  static constexpr int weekdays = 7;
  static constexpr int weekends = 8;

  int day = 0;  ///< 0 (Sunday) to 6, `weekdays` or `weekends`
  Time time = {};

  bool operator==(const DayOfWeek&) const = default;
};

/// Runs every month on that day. Shorter months are skipped.
struct DayOfMonth {
  static constexpr Kind kind = Kind::dayOfMonth;

  int day = 0;  ///< 0 is the 1st, 30 the 31st
  Time time = {};

  bool operator==(const DayOfMonth&) const = default;
};

/// Runs every year on that date. Dates that don't exist, such as 30 February, are kept.
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

/// The rules of a job: the repeat rule, then the others in the order of their intervals, then groups of days, then
/// single days of the week. Numbers out of range are clamped or replaced by 0; a month without a day and a weekday
/// beside a day are ignored. Never fails.
std::vector<ScheduledType> rules(std::optional<std::int64_t> startInterval,
                                 const std::optional<jobfile::StartCalendarInterval>& startCalendarInterval,
                                 const Week& week = Week::current());

/// Splits seconds into a number of the largest unit that divides them: 7200 → 2 `hours`, 90 → 90 `seconds`, 0 → 0
/// `days`.
RepeatInterval splitInterval(std::int64_t seconds);

}  // namespace mirvel::Scheduled

/// Rules together with the values of the job file that they were made from, which can contain more than the rules show.
namespace mirvel::Scheduled {

/// The values of a job file that a rule represents: either an interval in seconds or calendar intervals.
struct FileSource {
  std::optional<std::int64_t> startInterval = {};
  std::vector<jobfile::StartCalendarInterval::Interval> intervals = {};  ///< several for a group of days

  bool operator==(const FileSource&) const = default;
};

/// A rule and the values of the job file that it was made from.
struct FileRule {
  ScheduledType rule;
  FileSource source = {};
};

/// The same as `rules`, each with its source.
std::vector<FileRule> fileRules(std::optional<std::int64_t> startInterval,
                                const std::optional<jobfile::StartCalendarInterval>& startCalendarInterval,
                                const Week& week = Week::current());

/// The part of an interval that its rule shows, with numbers clamped.
jobfile::StartCalendarInterval::Interval shownInterval(const jobfile::StartCalendarInterval::Interval& interval);

/// The rule that shows as much as possible of an interval.
ScheduledType ruleOf(const jobfile::StartCalendarInterval::Interval& interval);

/// Whether the rule of an interval shows exactly when launchd runs the job.
bool isFullyShown(const jobfile::StartCalendarInterval::Interval& interval);

}  // namespace mirvel::Scheduled
