#pragma once

#include <string>

#include "core/schedule/Scheduled.h"
#include "core/support/Localize.h"

namespace mirvel::explain {

/// A schedule rule as a sentence without a full stop: "Every 2 hours", "Every Monday at 09:00", "On the 1st of every
/// month at 00:00". Names and numbers are those of the locale; times of day always have 24 hours.
std::string ruleText(const Scheduled::ScheduledType& rule, const Localize& localize);

}  // namespace mirvel::explain
