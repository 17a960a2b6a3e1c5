#include "core/schedule/Scheduled.h"

#include <algorithm>
#include <cmath>

#include "core/schedule/DayGroups.h"
#include "core/support/Dates.h"

namespace mirvel::Scheduled {

namespace {

using Interval = launchd::StartCalendarInterval::Interval;

/// The number, or 0 if it is absent or out of its range.
int orZero(const std::optional<std::int64_t>& number, int greatest) {
  return number && *number >= 0 && *number <= greatest ? static_cast<int>(*number) : 0;
}

/// The index of a number that counts from 1, clamped to its range.
int indexOf(std::int64_t number, std::int64_t greatest) {
  return static_cast<int>(std::clamp<std::int64_t>(number, 1, greatest) - 1);
}

ScheduledType ruleOf(const Interval& interval) {
  const int minute = orZero(interval.minute, 59);
  const Time time = Date::timeOfDay(orZero(interval.hour, 23), minute);
  if (interval.day && interval.month) {
    return DayOfYear{.month = indexOf(*interval.month, 12), .day = indexOf(*interval.day, 31), .time = time};
  }
  if (interval.day) return DayOfMonth{.day = indexOf(*interval.day, 31), .time = time};
  if (interval.weekday) return DayOfWeek{.day = orZero(interval.weekday, 6), .time = time};
  if (interval.hour) return EveryDay{.time = time};
  return EveryHour{.minute = minute};
}

}  // namespace

Kind kindOf(const ScheduledType& rule) {
  return static_cast<Kind>(rule.index());
}

RepeatInterval splitInterval(std::int64_t seconds) {
  using Unit = RepeatInterval::Unit;
  // Divided as single-precision numbers, so a huge interval shows as its nearest such number.
  const auto inHours = static_cast<float>(seconds) / 60.0F / 60.0F;
  if (seconds % 86400 == 0) return {.interval = std::llround(inHours / 24.0F), .unit = Unit::days};
  if (seconds % 3600 == 0) return {.interval = std::llround(inHours), .unit = Unit::hours};
  if (seconds % 60 == 0) {
    return {.interval = std::llround(static_cast<float>(seconds) / 60.0F), .unit = Unit::minutes};
  }
  return {.interval = seconds, .unit = Unit::seconds};
}

std::vector<ScheduledType> rules(std::optional<std::int64_t> startInterval,
                                 const std::optional<launchd::StartCalendarInterval>& startCalendarInterval,
                                 const Week& week) {
  std::vector<ScheduledType> result;
  if (startInterval) result.emplace_back(splitInterval(*startInterval));
  if (!startCalendarInterval) return result;

  std::vector<DayOfWeek> daysOfWeek;
  for (const Interval& interval : startCalendarInterval->intervals) {
    const ScheduledType rule = ruleOf(interval);
    if (const auto* dayOfWeek = std::get_if<DayOfWeek>(&rule)) {
      daysOfWeek.push_back(*dayOfWeek);
    } else {
      result.push_back(rule);
    }
  }
  for (const DayOfWeek& rule : foldDays(daysOfWeek, week)) result.emplace_back(rule);
  return result;
}

}  // namespace mirvel::Scheduled
