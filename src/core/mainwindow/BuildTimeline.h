#pragma once

#include <chrono>

#include "core/catalogue/Job.h"
#include "core/mainwindow/Timeline.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/schedule/ZoneStretches.h"

namespace mirvel {

/// What the jobs' own records let run within a month from now: first those that run in an interval, in the order of
/// the jobs, then every run by the calendar under the header of its day.
TimelineArray buildTimeline(const Jobs& jobs, std::chrono::sys_seconds now, const TimelineTexts& texts);

/// The same time of day a month later, on the last day of the month if that month is too short. `zone` reaches 32 days
/// from that moment on.
std::chrono::sys_seconds oneMonthAfter(std::chrono::sys_seconds moment, const ZoneStretches& zone);

}  // namespace mirvel
