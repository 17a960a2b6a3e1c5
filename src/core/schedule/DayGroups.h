#pragma once

#include <vector>

#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

/// Merges single days of the week into the groups of weekdays and weekends wherever all days of a group have a rule at
/// the same time, and their intervals otherwise differ only in the weekday. Groups come first, in the order of their
/// first rule, followed by the remaining single days in their order. Each of `singleDays` must be a `DayOfWeek` with
/// one source interval.
std::vector<FileRule> foldDays(std::vector<FileRule> singleDays, const Week& week);

}  // namespace mirvel::Scheduled
