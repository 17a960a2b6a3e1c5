#include "core/schedule/CalendarRule.h"

#include <algorithm>
#include <bit>

namespace mirvel {

using namespace std::chrono;
using Interval = jobfile::StartCalendarInterval::Interval;

namespace {

template <typename Bits>
constexpr Bits range(int least, int greatest) {
  Bits bits = 0;
  for (int number = least; number <= greatest; ++number) bits |= Bits{1} << static_cast<unsigned>(number);
  return bits;
}

constexpr auto allMinutes = range<std::uint64_t>(0, 59);
constexpr auto allHours = range<std::uint32_t>(0, 23);
constexpr auto allDays = range<std::uint32_t>(1, 31);
constexpr auto allMonths = range<std::uint32_t>(1, 12);
constexpr std::uint32_t sunday = 1;

/// The set with only that number; empty if `all` doesn't contain it.
template <typename Bits>
Bits only(std::int64_t number, Bits all) {
  if (number < 0 || number > 63) return 0;
  return static_cast<Bits>((std::uint64_t{1} << static_cast<unsigned>(number)) & all);
}

template <typename Bits>
Bits onlyOrAny(const std::optional<std::int64_t>& number, Bits all) {
  return number ? only(*number, all) : all;
}

/// The members of a set that aren't less than the number.
template <typename Bits>
Bits from(unsigned number, Bits bits) {
  return number >= sizeof(Bits) * 8 ? Bits{0} : static_cast<Bits>(bits >> number << number);
}

template <typename Bits>
unsigned least(Bits bits) {
  return static_cast<unsigned>(std::countr_zero(bits));
}

}  // namespace

CalendarRule CalendarRule::asShown(const Interval& interval) {
  CalendarRule rule;
  if (!interval.day && !interval.weekday && !interval.hour && !interval.minute) return rule;
  rule.m_minutes = only(interval.minute.value_or(0), allMinutes);
  rule.m_hours = only(interval.hour.value_or(0), allHours);
  rule.m_months = allMonths;
  if (interval.day) {
    rule.m_days = only(std::clamp<std::int64_t>(*interval.day, 1, 31), allDays);
    if (interval.month) rule.m_months = only(std::clamp<std::int64_t>(*interval.month, 1, 12), allMonths);
  } else if (interval.weekday) {
    const bool isKnown = *interval.weekday >= 0 && *interval.weekday <= 6;
    rule.m_weekdays = isKnown ? 1U << static_cast<unsigned>(*interval.weekday) : sunday;
  } else {
    rule.m_days = allDays;
    if (!interval.hour) rule.m_hours = allHours;
  }
  return rule;
}

CalendarRule CalendarRule::asRun(const Interval& interval) {
  CalendarRule rule;
  rule.m_minutes = onlyOrAny(interval.minute, allMinutes);
  rule.m_hours = onlyOrAny(interval.hour, allHours);
  rule.m_months = onlyOrAny(interval.month, allMonths);
  if (interval.weekday)
    rule.m_weekdays = only(*interval.weekday == 7 ? 0 : *interval.weekday, range<std::uint32_t>(0, 6));
  if (interval.day || !interval.weekday) rule.m_days = onlyOrAny(interval.day, allDays);
  return rule;
}

/// The matching days of a month; bit n represents day n.
std::uint32_t CalendarRule::daysIn(year_month month) const {
  if ((m_months >> static_cast<unsigned>(month.month()) & 1U) == 0) return 0;
  const auto last = static_cast<unsigned>((month / std::chrono::last).day());
  const unsigned first = weekday(local_days(month / 1)).c_encoding();
  // Repeats the 7-bit week over the month, rotated so that bit 1 is the weekday of the first.
  constexpr std::uint64_t weekly = 1 | 1ULL << 7 | 1ULL << 14 | 1ULL << 21 | 1ULL << 28 | 1ULL << 35;
  const auto byWeekday = static_cast<std::uint32_t>((m_weekdays * weekly) >> first << 1U);
  return (m_days | byWeekday) & range<std::uint32_t>(1, static_cast<int>(last));
}

std::optional<local_seconds> CalendarRule::firstOnDay(local_days day, minutes start) const {
  const auto startHour = static_cast<unsigned>(start / hours(1));
  const auto startMinute = static_cast<unsigned>(start % hours(1) / minutes(1));
  if ((m_hours >> startHour & 1U) != 0) {
    const std::uint64_t left = from(startMinute, m_minutes);
    if (left != 0) return day + hours(startHour) + minutes(least(left));
  }
  const std::uint32_t later = from(startHour + 1, m_hours);
  if (later == 0) return std::nullopt;
  return day + hours(least(later)) + minutes(least(m_minutes));
}

std::optional<local_seconds> CalendarRule::first(local_seconds start, local_seconds end) const {
  if (isEmpty()) return std::nullopt;
  const auto minute = ceil<minutes>(start);
  const local_days startDay = floor<days>(minute);
  const year_month_day date(startDay);
  year_month month = date.year() / date.month();
  std::uint32_t left = from(static_cast<unsigned>(date.day()), daysIn(month));
  while (local_days(month / 1) < end) {
    for (; left != 0; left &= left - 1) {
      const local_days day(month / std::chrono::day(least(left)));
      const auto found = firstOnDay(day, day == startDay ? minute - startDay : minutes(0));
      if (found) return *found < end ? found : std::nullopt;
    }
    month += months(1);
    left = daysIn(month);
  }
  return std::nullopt;
}

}  // namespace mirvel
