#pragma once

#include <string>

#include "core/locale/Localize.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::explain {

/// How times of day are told: as in the job file, or as clocks are read in the locale ("9:00 AM").
enum class TimeForm { twentyFourHours, ofTheLocale };

/// A schedule rule as a sentence without a full stop: "Every 2 hours", "Every Monday at 09:00", "On the 1st of every
/// month at 00:00". Names and numbers are those of the locale.
std::string ruleText(const Scheduled::ScheduledType& rule, const Localize& localize,
                     TimeForm form = TimeForm::twentyFourHours);

}  // namespace mirvel::explain
