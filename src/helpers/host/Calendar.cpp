#include "helpers/host/Calendar.h"

namespace mirvel::host {

using namespace std::chrono;

std::optional<sys_seconds> Calendar::firstRun(std::span<const CalendarRule> rules, sys_seconds after) {
  constexpr auto span = days(9 * 366);
  constexpr auto usable = days(366);
  if (!m_stretches || after < m_from || after > m_from + usable) {
    m_from = after;
    m_stretches.emplace(m_zone, after, after + span);
  }
  return mirvel::firstRun(rules, *m_stretches, after);
}

bool Calendar::setZone(const std::string& zone) {
  if (zone == m_zone) return false;
  m_zone = zone;
  m_stretches.reset();
  return true;
}

}  // namespace mirvel::host
