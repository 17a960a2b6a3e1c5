#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

#include "core/schedule/CalendarRule.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

/// A calendar rule of an owner, which is an arbitrary number chosen by the caller.
struct OwnedRule {
  CalendarRule rule;
  std::uint32_t owner = 0;
};

/// A run of one of the rules of `owner`.
struct OwnedRun {
  std::chrono::sys_seconds date;
  std::uint32_t owner = 0;

  bool operator==(const OwnedRun&) const = default;
};

/// The runs of all rules after `after` and before `end`, both exclusive and in the span of the zone. Sorted by time;
/// runs at the same moment are in the order of their rules.
std::vector<OwnedRun> mergedRuns(std::span<const OwnedRule> rules, const ZoneStretches& zone,
                                 std::chrono::sys_seconds after, std::chrono::sys_seconds end);

}  // namespace mirvel
