#pragma once

#include <vector>

#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

/// Folds single days of the week into the groups of weekdays and weekends, wherever all days of a group have a rule at
/// the same time: first the groups, in the order in which their times come, then what is left in its order. What a rule
/// doesn't tell of its interval must be the same in the others, too. Each of `singleDays` is a `DayOfWeek`, made of one
/// interval.
std::vector<FileRule> foldDays(std::vector<FileRule> singleDays, const Week& week);

}  // namespace mirvel::Scheduled
