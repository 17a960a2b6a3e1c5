#pragma once

#include <algorithm>
#include <chrono>
#include <optional>
#include <span>

#include "core/schedule/CalendarRule.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

/// The runs of a calendar rule, one by one:
///
///     ComingRuns runs(rule, zone, now, end);
///     while (const auto run = runs.next()) ...
///
/// A local time that doesn't exist gives no run; one that comes twice gives one, the first. The zone must outlive it.
class ComingRuns {
 public:
  /// The runs strictly after `after` and before `end`, which both lie in the span of the zone.
  ComingRuns(const CalendarRule& rule, const ZoneStretches& zone, std::chrono::sys_seconds after,
             std::chrono::sys_seconds end);

  std::optional<std::chrono::sys_seconds> next();

 private:
  CalendarRule m_rule;
  std::span<const ZoneStretches::Stretch> m_stretches;  ///< those not yet done
  std::chrono::local_seconds m_from;                    ///< in the first of them
  std::chrono::sys_seconds m_end;
};

/// Calls `visit(std::chrono::sys_seconds)` for each of these runs, in their order. Much quicker than to ask for one
/// after the other.
template <typename Visit>
void forEachRun(const CalendarRule& rule, const ZoneStretches& zone, std::chrono::sys_seconds after,
                std::chrono::sys_seconds end, Visit visit) {
  using namespace std::chrono;
  for (const auto& stretch : zone.all()) {
    if (stretch.end <= after) continue;
    if (stretch.begin >= end) break;
    const seconds offset = stretch.offset;
    const auto local = [offset](sys_seconds moment) { return local_seconds((moment + offset).time_since_epoch()); };
    rule.forEach(std::max(local(after) + seconds(1), stretch.localBegin), std::min(local(end), stretch.localEnd),
                 [&](local_seconds time) { visit(sys_seconds(time.time_since_epoch()) - offset); });
  }
}

/// The first run of any of the rules after that moment, within the span of the zone.
std::optional<std::chrono::sys_seconds> firstRun(std::span<const CalendarRule> rules, const ZoneStretches& zone,
                                                 std::chrono::sys_seconds after);

}  // namespace mirvel
