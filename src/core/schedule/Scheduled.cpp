#include "core/schedule/Scheduled.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/locale/Dates.h"
#include "core/schedule/CalendarRule.h"
#include "core/schedule/DayGroups.h"

namespace mirvel::Scheduled {

namespace {

using Interval = jobfile::StartCalendarInterval::Interval;

/// The number; 0 if it is missing or out of range.
std::int64_t orZero(const std::optional<std::int64_t>& number, std::int64_t greatest) {
  return number && *number >= 0 && *number <= greatest ? *number : 0;
}

}  // namespace

Interval shownInterval(const Interval& interval) {
  Interval shown{.minute = orZero(interval.minute, 59)};
  if (!interval.day && !interval.weekday && !interval.hour) return shown;
  shown.hour = orZero(interval.hour, 23);
  if (interval.day) {
    shown.day = std::clamp<std::int64_t>(*interval.day, 1, 31);
    if (interval.month) shown.month = std::clamp<std::int64_t>(*interval.month, 1, 12);
  } else if (interval.weekday) {
    shown.weekday = orZero(interval.weekday, 6);
  }
  return shown;
}

ScheduledType ruleOf(const Interval& interval) {
  const Interval shown = shownInterval(interval);
  const auto number = [](const std::optional<std::int64_t>& field) { return static_cast<int>(*field); };
  if (!shown.hour) return EveryHour{.minute = number(shown.minute)};
  const Time time = Date::timeOfDay(number(shown.hour), number(shown.minute));
  if (shown.month) return DayOfYear{.month = number(shown.month) - 1, .day = number(shown.day) - 1, .time = time};
  if (shown.day) return DayOfMonth{.day = number(shown.day) - 1, .time = time};
  if (shown.weekday) return DayOfWeek{.day = number(shown.weekday), .time = time};
  return EveryDay{.time = time};
}

bool isFullyShown(const Interval& interval) {
  return CalendarRule::asRun(shownInterval(interval)) == CalendarRule::asRun(interval);
}

Kind kindOf(const ScheduledType& rule) {
  return static_cast<Kind>(rule.index());
}

RepeatInterval splitInterval(std::int64_t seconds) {
  using Unit = RepeatInterval::Unit;
  // Divides in single precision, so a huge interval is shown rounded.
  const auto inHours = static_cast<float>(seconds) / 60.0F / 60.0F;
  if (seconds % 86400 == 0) return {.interval = std::llround(inHours / 24.0F), .unit = Unit::days};
  if (seconds % 3600 == 0) return {.interval = std::llround(inHours), .unit = Unit::hours};
  if (seconds % 60 == 0) {
    return {.interval = std::llround(static_cast<float>(seconds) / 60.0F), .unit = Unit::minutes};
  }
  return {.interval = seconds, .unit = Unit::seconds};
}

std::vector<FileRule> fileRules(std::optional<std::int64_t> startInterval,
                                const std::optional<jobfile::StartCalendarInterval>& startCalendarInterval,
                                const Week& week) {
  std::vector<FileRule> result;
  if (startInterval) result.push_back({splitInterval(*startInterval), {.startInterval = startInterval}});
  if (!startCalendarInterval) return result;

  std::vector<FileRule> daysOfWeek;
  for (const Interval& interval : startCalendarInterval->intervals) {
    FileRule rule{ruleOf(interval), {.intervals = {interval}}};
    const bool isDayOfWeek = kindOf(rule.rule) == Kind::dayOfWeek;
    (isDayOfWeek ? daysOfWeek : result).push_back(std::move(rule));
  }
  for (FileRule& rule : foldDays(std::move(daysOfWeek), week)) result.push_back(std::move(rule));
  return result;
}

std::vector<ScheduledType> rules(std::optional<std::int64_t> startInterval,
                                 const std::optional<jobfile::StartCalendarInterval>& startCalendarInterval,
                                 const Week& week) {
  std::vector<ScheduledType> result;
  for (const FileRule& rule : fileRules(startInterval, startCalendarInterval, week)) result.push_back(rule.rule);
  return result;
}

}  // namespace mirvel::Scheduled
