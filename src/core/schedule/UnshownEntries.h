#pragma once

#include <string>
#include <vector>

#include "core/jobfile/StartCalendarInterval.h"
#include "core/locale/Localize.h"

namespace mirvel::Scheduled {

/// The entries of those intervals of which their rules don't tell all (see `isTold`), as the job file has them: “In the
/// job file: Day 1, Weekday 1”. Empty if the rules tell all.
std::string untoldText(const std::vector<jobfile::StartCalendarInterval::Interval>& intervals,
                       const Localize& localize);

}  // namespace mirvel::Scheduled
