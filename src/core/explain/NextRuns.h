#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/schedule/MomentTexts.h"

namespace mirvel {

/// Describes the next runs of a job's schedule in one or two lines: "Next: Monday 9:00 AM, then Tuesday 9:00 AM", or
/// for an interval "Every 2 hours, counted from when the job is loaded". Calendar intervals are interpreted as launchd
/// runs them (`CalendarRule::asRun`). Doesn't consider whether the job is disabled. Null without a schedule; a schedule
/// that never triggers yields a text saying so.
std::optional<std::string> nextRunsText(const jobfile::Plist& record, std::chrono::sys_seconds now,
                                        const MomentTexts& texts);

/// The next `count` moments, or fewer, at which the schedule starts the job if it is loaded at `now`, merging those of
/// the calendar and those of the interval. Empty without a schedule.
std::vector<std::string> nextRunTexts(const jobfile::Plist& record, std::chrono::sys_seconds now, std::size_t count,
                                      const MomentTexts& texts);

}  // namespace mirvel
