#include "core/schedule/MergedRuns.h"

#include <cstdint>

#include "core/base/RadixSort.h"
#include "core/schedule/ComingRuns.h"

namespace mirvel {

using namespace std::chrono;

std::vector<OwnedRun> mergedRuns(std::span<const OwnedRule> rules, const ZoneStretches& zone, sys_seconds after,
                                 sys_seconds end) {
  std::vector<OwnedRun> runs;
  if (end <= after) return runs;
  for (const OwnedRule& owned : rules) {
    forEachRun(owned.rule, zone, after, end, [&](sys_seconds run) { runs.push_back({run, owned.owner}); });
  }
  if (rules.size() > 1) {
    radixSort(runs, static_cast<std::uint64_t>((end - after).count()),
              [after](const OwnedRun& run) { return static_cast<std::uint64_t>((run.date - after).count()); });
  }
  return runs;
}

}  // namespace mirvel
