#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "core/plist/StartCalendarInterval.h"

namespace mirvel {

/// One calendar interval as sets of numbers, by which coming runs are found without trying each minute.
class CalendarRule {
 public:
  /// What the timeline shows: a missing hour or minute is 0 (a missing hour beside nothing but a minute is any); a day
  /// counts before a weekday, and a month only beside a day; days and months out of range are brought into it, a
  /// weekday out of range is Sunday, hours and minutes out of range never come. Without a field there are no runs.
  static CalendarRule asShown(const launchd::StartCalendarInterval::Interval& interval);
  /// How launchd.plist(5) has it, and jobs are run: what is missing is any; of a day and a weekday either is enough; a
  /// number out of range never comes.
  static CalendarRule asRun(const launchd::StartCalendarInterval::Interval& interval);

  /// The first fitting minute at or after that time, but before `end`.
  std::optional<std::chrono::local_seconds> first(std::chrono::local_seconds from,
                                                  std::chrono::local_seconds end) const;

 private:
  bool isEmpty() const { return m_months == 0 || m_hours == 0 || m_minutes == 0 || (m_days | m_weekdays) == 0; }
  std::uint32_t daysIn(std::chrono::year_month month) const;
  std::optional<std::chrono::local_seconds> firstOnDay(std::chrono::local_days day, std::chrono::minutes from) const;

  // Bit n stands for the number n. A day fits if either of its two sets holds it.
  std::uint64_t m_minutes = 0;
  std::uint32_t m_hours = 0;
  std::uint32_t m_days = 0;
  std::uint32_t m_weekdays = 0;
  std::uint32_t m_months = 0;
};

}  // namespace mirvel
