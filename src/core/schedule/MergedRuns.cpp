#include "core/schedule/MergedRuns.h"

#include <cstddef>

#include "core/base/RadixSort.h"
#include "core/schedule/ComingRuns.h"

namespace mirvel {

using namespace std::chrono;

namespace {

constexpr unsigned digitBits = 11;
constexpr std::size_t digits = std::size_t{1} << digitBits;

/// A radix sort, since runs are many and their range is small: a span of a month takes two passes, however many they
/// are.
void sortByDate(std::vector<OwnedRun>& runs, sys_seconds begin, sys_seconds end) {
  std::vector<OwnedRun> sorted(runs.size());
  const auto span = static_cast<std::uint64_t>((end - begin).count());
  for (unsigned shift = 0; shift < 64 && span >> shift != 0; shift += digitBits) {
    sortByDigit<digits>(std::span<const OwnedRun>(runs), std::span(sorted), [begin, shift](const OwnedRun& run) {
      return static_cast<std::uint64_t>((run.date - begin).count()) >> shift & (digits - 1);
    });
    runs.swap(sorted);
  }
}

}  // namespace

std::vector<OwnedRun> mergedRuns(std::span<const OwnedRule> rules, const ZoneStretches& zone, sys_seconds after,
                                 sys_seconds end) {
  std::vector<OwnedRun> runs;
  if (end <= after) return runs;
  for (const OwnedRule& owned : rules) {
    forEachRun(owned.rule, zone, after, end, [&](sys_seconds run) { runs.push_back({run, owned.owner}); });
  }
  if (rules.size() > 1) sortByDate(runs, after, end);
  return runs;
}

}  // namespace mirvel
