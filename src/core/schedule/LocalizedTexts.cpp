#include "core/schedule/LocalizedTexts.h"

#include "core/support/Dates.h"

namespace mirvel::Scheduled {

Texts localizedTexts(const Localize& localize) {
  const auto lower = localize.lowercase();
  return {
      .kinds = {localize.repeatInterval(), localize.everyHour(), localize.everyDay(), localize.dayOfWeek(),
                localize.dayOfMonth(), localize.dayOfYear()},
      .units = {lower.seconds(), lower.minutes(), lower.hours(), lower.days()},
      .weekdays = localize.weekdays(),
      .weekends = localize.weekends(),
      .dayNames = Date::weekdays(localize.locale()),
      .monthNames = Date::months(localize.locale()),
  };
}

}  // namespace mirvel::Scheduled
