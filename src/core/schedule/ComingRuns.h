#pragma once

#include <algorithm>
#include <chrono>
#include <optional>
#include <span>

#include "core/schedule/CalendarRule.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

/// Iterates over the runs of a calendar rule in a time zone:
///
///     ComingRuns runs(rule, zone, now, end);
///     while (const auto run = runs.next()) ...
///
/// A local time that is skipped gives no run; one that occurs twice gives one run, at its first occurrence. The zone
/// must outlive the iterator.
class ComingRuns {
 public:
  /// The runs after `after` and before `end`, both exclusive. Both must be in the span of the zone.
  ComingRuns(const CalendarRule& rule, const ZoneStretches& zone, std::chrono::sys_seconds after,
             std::chrono::sys_seconds end);

  /// The next run; null at the end.
  std::optional<std::chrono::sys_seconds> next();

 private:
  CalendarRule m_rule;
  std::span<const ZoneStretches::Stretch> m_stretches;  ///< those not yet searched completely
  std::chrono::local_seconds m_from;                    ///< where the search continues in the first of them
  std::chrono::sys_seconds m_end;
};

/// Calls `visit(std::chrono::sys_seconds)` for each of these runs, in ascending order. Much faster than `ComingRuns`.
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

/// The first run of any of the rules after `after`, within the span of the zone; null if there is none.
std::optional<std::chrono::sys_seconds> firstRun(std::span<const CalendarRule> rules, const ZoneStretches& zone,
                                                 std::chrono::sys_seconds after);

}  // namespace mirvel
