#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/schedule/MomentTexts.h"

namespace mirvel {

/// When a job runs next by the schedule in its record, as one or two lines: "Next: Monday 9:00 AM, then Tuesday 9:00
/// AM", and of an interval "Every 2 hours, counted from when the job is loaded". Such as launchd runs it (see
/// `CalendarRule::asRun`), whether the job is enabled or not. None without a schedule.
std::optional<std::string> nextRunsText(const jobfile::Plist& record, std::chrono::sys_seconds now,
                                        const MomentTexts& texts);

/// The next moments at which the schedule in a record starts the job, `count` at most, if it is loaded now: those of
/// the calendar, and those of the interval counted from now.
std::vector<std::string> nextRunTexts(const jobfile::Plist& record, std::chrono::sys_seconds now, std::size_t count,
                                      const MomentTexts& texts);

}  // namespace mirvel
