#pragma once

#include <bit>
#include <chrono>
#include <cstdint>
#include <optional>

#include "core/jobfile/StartCalendarInterval.h"

namespace mirvel {

/// One calendar interval as sets of matching minutes, hours, days and months, which makes finding the next run cheap.
/// There are two interpretations of an interval, whose numbers needn't be in range.
class CalendarRule {
 public:
  /// The interpretation of the timeline: a missing hour or minute is 0, but a lone minute matches every hour. A day
  /// takes precedence over a weekday, and a month only counts with a day. Days and months out of range are clamped, a
  /// weekday out of range is Sunday, and hours and minutes out of range never match. Without day, weekday, hour and
  /// minute there are no runs.
  static CalendarRule asShown(const jobfile::StartCalendarInterval::Interval& interval);
  /// The interpretation of launchd.plist(5), by which jobs are run: a missing field matches anything, either the day or
  /// the weekday is enough, weekday 7 is Sunday, and a number out of range never matches.
  static CalendarRule asRun(const jobfile::StartCalendarInterval::Interval& interval);

  /// Whether both match the same minutes.
  bool operator==(const CalendarRule&) const = default;

  /// The first matching minute in the range from `from` (inclusive) to `end` (exclusive).
  std::optional<std::chrono::local_seconds> first(std::chrono::local_seconds from,
                                                  std::chrono::local_seconds end) const;
  /// Calls `visit(std::chrono::local_seconds)` for every matching minute from `from` (inclusive) to `end` (exclusive),
  /// in ascending order. Takes a few nanoseconds per run, many times less than repeated calls of `first`.
  template <typename Visit>
  void forEach(std::chrono::local_seconds from, std::chrono::local_seconds end, Visit visit) const;

 private:
  /// Whether nothing can match, so that searches end at once.
  bool isEmpty() const { return m_months == 0 || m_hours == 0 || m_minutes == 0 || (m_days | m_weekdays) == 0; }
  /// The days of a month that match; bit n represents day n.
  std::uint32_t daysIn(std::chrono::year_month month) const;
  /// The first match at or after a time of a day that matches.
  std::optional<std::chrono::local_seconds> firstOnDay(std::chrono::local_days day, std::chrono::minutes from) const;
  template <typename Visit>
  void forEachOnDay(std::chrono::local_days day, Visit visit) const;

  // Bit n represents the number n. A day matches if it is in either of the two sets of days.
  std::uint64_t m_minutes = 0;
  std::uint32_t m_hours = 0;
  std::uint32_t m_days = 0;
  std::uint32_t m_weekdays = 0;
  std::uint32_t m_months = 0;
};

// Iterates over set bits only: `x &= x - 1` clears the lowest one.
template <typename Visit>
void CalendarRule::forEachOnDay(std::chrono::local_days day, Visit visit) const {
  for (std::uint32_t hours = m_hours; hours != 0; hours &= hours - 1) {
    const std::chrono::local_seconds hour = day + std::chrono::hours(std::countr_zero(hours));
    for (std::uint64_t minutes = m_minutes; minutes != 0; minutes &= minutes - 1) {
      visit(hour + std::chrono::minutes(std::countr_zero(minutes)));
    }
  }
}

template <typename Visit>
void CalendarRule::forEach(std::chrono::local_seconds from, std::chrono::local_seconds end, Visit visit) const {
  using namespace std::chrono;
  if (isEmpty() || from >= end) return;
  const auto visitWithin = [&](local_seconds time) {
    if (time >= from && time < end) visit(time);
  };
  const local_days firstDay = floor<days>(from);
  const local_days lastDay = floor<days>(end);
  const year_month_day date(firstDay);
  for (year_month month = date.year() / date.month(); local_days(month / 1) <= lastDay; month += months(1)) {
    const local_days dayZero = local_days(month / 1) - days(1);
    for (std::uint32_t left = daysIn(month); left != 0; left &= left - 1) {
      const local_days day = dayZero + days(std::countr_zero(left));
      // Only the first and the last day need a check of each minute.
      if (day > firstDay && day < lastDay) {
        forEachOnDay(day, visit);
      } else if (day == firstDay || day == lastDay) {
        forEachOnDay(day, visitWithin);
      }
    }
  }
}

}  // namespace mirvel
