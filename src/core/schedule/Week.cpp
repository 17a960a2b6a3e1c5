#include "core/schedule/Week.h"

#include <unicode/ucal.h>
#include <unicode/uloc.h>

#include <cstddef>
#include <memory>
#include <string_view>

namespace mirvel::Scheduled {

namespace {

struct CloseCalendar {
  void operator()(UCalendar* calendar) const { ucal_close(calendar); }
};
using CalendarHandle = std::unique_ptr<UCalendar, CloseCalendar>;  // UCalendar is an alias of void*

constexpr Days saturdayAndSunday(0b1000001);

CalendarHandle calendarOf(const std::string& locale) {
  constexpr std::u16string_view zone = u"GMT";  // weekends depend on the locale only
  UErrorCode status = U_ZERO_ERROR;
  CalendarHandle calendar(
      ucal_open(zone.data(), static_cast<std::int32_t>(zone.size()), locale.c_str(), UCAL_DEFAULT, &status));
  return U_SUCCESS(status) ? std::move(calendar) : nullptr;
}

bool isWeekendAtNoon(const UCalendar* calendar, UCalendarDaysOfWeek day) {
  constexpr std::int32_t noon = 12 * 60 * 60 * 1000;
  UErrorCode status = U_ZERO_ERROR;
  const UCalendarWeekdayType type = ucal_getDayOfWeekType(calendar, day, &status);
  if (U_FAILURE(status) || type == UCAL_WEEKDAY) return false;
  if (type == UCAL_WEEKEND) return true;
  const std::int32_t change = ucal_getWeekendTransition(calendar, day, &status);
  return U_SUCCESS(status) && (type == UCAL_WEEKEND_ONSET ? change <= noon : change > noon);
}

}  // namespace

Week Week::of(const std::string& locale) {
  const CalendarHandle calendar = calendarOf(locale);
  Days weekends;
  for (std::size_t day = 0; calendar && day < weekends.size(); ++day) {
    weekends[day] =
        isWeekendAtNoon(calendar.get(), static_cast<UCalendarDaysOfWeek>(UCAL_SUNDAY + static_cast<int>(day)));
  }
  if (!calendar) weekends = saturdayAndSunday;
  return {.weekends = weekends, .weekdays = ~weekends};
}

const Week& Week::current() {
  static const Week week = of(uloc_getDefault());
  return week;
}

}  // namespace mirvel::Scheduled
