#pragma once

#include <string>
#include <vector>

#include "core/jobfile/StartCalendarInterval.h"
#include "core/locale/Localize.h"

namespace mirvel::Scheduled {

/// Lists the entries of the intervals that aren't fully shown by their rules (see `isFullyShown`), in the spelling of
/// the job file: “In the job file: Day 1, Weekday 1; Hour 9”. An interval without entries is listed as every minute.
/// After seven intervals, the rest is abbreviated to "…". Empty if all intervals are fully shown.
std::string unshownEntries(const std::vector<jobfile::StartCalendarInterval::Interval>& intervals,
                           const Localize& localize);

}  // namespace mirvel::Scheduled
