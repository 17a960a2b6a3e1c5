#pragma once

#include <bit>
#include <chrono>
#include <cstdint>
#include <optional>

#include "core/jobfile/StartCalendarInterval.h"

namespace mirvel {

/// One calendar interval as sets of numbers, by which coming runs are found without trying each minute.
class CalendarRule {
 public:
  /// What the timeline shows: a missing hour or minute is 0 (a missing hour beside nothing but a minute is any); a day
  /// counts before a weekday, and a month only beside a day; days and months out of range are brought into it, a
  /// weekday out of range is Sunday, hours and minutes out of range never come. Without a field there are no runs.
  static CalendarRule asShown(const jobfile::StartCalendarInterval::Interval& interval);
  /// How launchd.plist(5) has it, and jobs are run: what is missing is any; of a day and a weekday either is enough; a
  /// number out of range never comes.
  static CalendarRule asRun(const jobfile::StartCalendarInterval::Interval& interval);

  /// Whether the same minutes fit both.
  bool operator==(const CalendarRule&) const = default;

  /// The first fitting minute at or after that time, but before `end`.
  std::optional<std::chrono::local_seconds> first(std::chrono::local_seconds from,
                                                  std::chrono::local_seconds end) const;
  /// Calls `visit(std::chrono::local_seconds)` for every fitting minute from that time on, but before `end`. In a few
  /// nanoseconds each, where a search for one after the other takes many.
  template <typename Visit>
  void forEach(std::chrono::local_seconds from, std::chrono::local_seconds end, Visit visit) const;

 private:
  bool isEmpty() const { return m_months == 0 || m_hours == 0 || m_minutes == 0 || (m_days | m_weekdays) == 0; }
  std::uint32_t daysIn(std::chrono::year_month month) const;
  std::optional<std::chrono::local_seconds> firstOnDay(std::chrono::local_days day, std::chrono::minutes from) const;
  template <typename Visit>
  void forEachOnDay(std::chrono::local_days day, Visit visit) const;

  // Bit n stands for the number n. A day fits if either of its two sets holds it.
  std::uint64_t m_minutes = 0;
  std::uint32_t m_hours = 0;
  std::uint32_t m_days = 0;
  std::uint32_t m_weekdays = 0;
  std::uint32_t m_months = 0;
};

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
      if (day > firstDay && day < lastDay) {
        forEachOnDay(day, visit);
      } else if (day == firstDay || day == lastDay) {
        forEachOnDay(day, visitWithin);
      }
    }
  }
}

}  // namespace mirvel
