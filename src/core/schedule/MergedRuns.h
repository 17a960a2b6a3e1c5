#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

#include "core/schedule/CalendarRule.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

/// A calendar rule of one of several owners, who are told apart by numbers of the caller's.
struct OwnedRule {
  CalendarRule rule;
  std::uint32_t owner = 0;
};

struct OwnedRun {
  std::chrono::sys_seconds date;
  std::uint32_t owner = 0;

  bool operator==(const OwnedRun&) const = default;
};

/// The runs of all rules strictly after `after` and before `end`, which both lie in the span of the zone. In the order
/// of time, and at one moment in that of the rules.
std::vector<OwnedRun> mergedRuns(std::span<const OwnedRule> rules, const ZoneStretches& zone,
                                 std::chrono::sys_seconds after, std::chrono::sys_seconds end);

}  // namespace mirvel
