#include "core/schedule/ZoneStretches.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>

namespace mirvel {

using namespace std::chrono;

namespace {

sys_seconds moment(UDate milliseconds) {
  return sys_seconds(seconds(static_cast<std::int64_t>(std::floor(milliseconds / 1000))));
}

UDate date(sys_seconds moment) {
  return static_cast<UDate>(moment.time_since_epoch().count()) * 1000;
}

seconds offsetAt(const icu::TimeZone& zone, sys_seconds moment) {
  std::int32_t raw = 0, daylight = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone.getOffset(date(moment), 0, raw, daylight, status);
  return U_SUCCESS(status) ? seconds((raw + daylight) / 1000) : seconds(0);
}

/// The next change of offset after a moment; null if there is none.
std::optional<sys_seconds> nextChange(const icu::TimeZone& zone, sys_seconds after) {
  const auto* const basic = dynamic_cast<const icu::BasicTimeZone*>(&zone);
  icu::TimeZoneTransition transition;
  if (!basic || !basic->getNextTransition(date(after), 0, transition)) return std::nullopt;
  return moment(transition.getTime());
}

}  // namespace

ZoneStretches::ZoneStretches(const std::string& zone, sys_seconds from, sys_seconds to) {
  // Starts early enough to know whether an hour at the beginning of the span is repeated.
  constexpr auto memory = days(2);
  const std::unique_ptr<icu::TimeZone> rules(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
  sys_seconds begin = from - memory;
  local_seconds shown{seconds::min()};
  while (begin < to || m_stretches.empty()) {
    const sys_seconds end = std::min(nextChange(*rules, begin).value_or(to), std::max(to, begin + seconds(1)));
    const seconds offset = offsetAt(*rules, begin);
    const local_seconds localBegin = std::max(local_seconds((begin + offset).time_since_epoch()), shown);
    const local_seconds localEnd((end + offset).time_since_epoch());
    m_stretches.push_back(
        {.begin = begin, .end = end, .offset = offset, .localBegin = localBegin, .localEnd = localEnd});
    shown = std::max(shown, localEnd);
    begin = end;
  }
}

local_seconds ZoneStretches::local(sys_seconds moment) const {
  const auto* stretch = m_stretches.data();
  while (stretch != &m_stretches.back() && stretch->end <= moment) ++stretch;
  return local_seconds((moment + stretch->offset).time_since_epoch());
}

sys_seconds ZoneStretches::moment(local_seconds time) const {
  const auto* stretch = m_stretches.data();
  while (stretch != &m_stretches.back() && stretch->localEnd <= time) ++stretch;
  return sys_seconds(std::max(time, stretch->localBegin).time_since_epoch()) - stretch->offset;
}

std::string zoneOfThisMachine() {
  const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  std::string result;
  zone->getID(id).toUTF8String(result);
  return result;
}

}  // namespace mirvel
