#pragma once

#include <string>

#include "core/locale/Localize.h"
#include "core/schedule/Scheduled.h"

namespace mirvel::explain {

/// The format of times of day: that of the job file ("21:05"), or that of the locale ("9:05 PM").
enum class TimeForm { TwentyFourHours, OfTheLocale };

/// A schedule rule as a sentence without a full stop: "Every 2 hours", "Every Monday at 09:00", "On the 1st of every
/// month at 00:00". Names, numbers and plural forms follow the locale of `localize`; without a translation the sentence
/// itself is English.
std::string ruleText(const Scheduled::ScheduledType& rule, const Localize& localize,
                     TimeForm form = TimeForm::TwentyFourHours);

}  // namespace mirvel::explain
