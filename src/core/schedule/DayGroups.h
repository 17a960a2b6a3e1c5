#pragma once

#include <vector>

#include "core/schedule/Scheduled.h"

namespace mirvel::Scheduled {

/// Folds single days of the week into the groups of weekdays and weekends, wherever all days of a group have a rule at
/// the same time: first the groups, in the order in which their times come, then what is left in its order.
std::vector<DayOfWeek> foldDays(const std::vector<DayOfWeek>& singleDays, const Week& week);

}  // namespace mirvel::Scheduled
