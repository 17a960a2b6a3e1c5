#include "core/schedule/ComingRuns.h"

#include <algorithm>

namespace mirvel {

using namespace std::chrono;

ComingRuns::ComingRuns(const CalendarRule& rule, const ZoneStretches& zone, sys_seconds after, sys_seconds end)
    : m_rule(rule), m_stretches(zone.all()), m_end(end) {
  while (!m_stretches.empty() && m_stretches.front().end <= after) m_stretches = m_stretches.subspan(1);
  if (m_stretches.empty()) return;
  const auto& stretch = m_stretches.front();
  m_from = std::max(local_seconds((after + stretch.offset).time_since_epoch()) + seconds(1), stretch.localBegin);
}

std::optional<sys_seconds> ComingRuns::next() {
  while (!m_stretches.empty()) {
    const auto& stretch = m_stretches.front();
    const local_seconds end = std::min(stretch.localEnd, local_seconds((m_end + stretch.offset).time_since_epoch()));
    if (const auto found = m_rule.first(m_from, end)) {
      m_from = *found + minutes(1);
      return sys_seconds(found->time_since_epoch()) - stretch.offset;
    }
    if (stretch.end >= m_end) m_stretches = {};
    if (!m_stretches.empty()) m_stretches = m_stretches.subspan(1);
    if (!m_stretches.empty()) m_from = m_stretches.front().localBegin;
  }
  return std::nullopt;
}

std::optional<sys_seconds> firstRun(std::span<const CalendarRule> rules, const ZoneStretches& zone, sys_seconds after) {
  std::optional<sys_seconds> earliest;
  for (const CalendarRule& rule : rules) {
    // Each rule only has to be searched up to the earliest run so far.
    const auto run = ComingRuns(rule, zone, after, earliest.value_or(zone.end())).next();
    if (run) earliest = run;
  }
  return earliest;
}

}  // namespace mirvel
