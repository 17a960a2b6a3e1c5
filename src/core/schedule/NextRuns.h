#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "core/plist/Plist.h"
#include "core/schedule/MomentTexts.h"

namespace mirvel {

/// When a job runs next by the schedule in its record, as one or two lines: "Next: Monday 9:00 AM, then Tuesday 9:00
/// AM", and of an interval "Every 2 hours, counted from when the job is loaded". Such as launchd runs it (see
/// `CalendarRule::asRun`), whether the job is enabled or not. None without a schedule.
std::optional<std::string> nextRunsText(const launchd::Plist& record, std::chrono::sys_seconds now,
                                        const MomentTexts& texts);

}  // namespace mirvel
