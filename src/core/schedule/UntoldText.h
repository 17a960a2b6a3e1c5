#pragma once

#include <string>
#include <vector>

#include "core/plist/StartCalendarInterval.h"
#include "core/support/Localize.h"

namespace mirvel::Scheduled {

/// The entries of those intervals of which their rules don't tell all (see `isTold`), as the job file has them: “In the
/// job file: Day 1, Weekday 1”. Empty if the rules tell all.
std::string untoldText(const std::vector<launchd::StartCalendarInterval::Interval>& intervals,
                       const Localize& localize);

}  // namespace mirvel::Scheduled
