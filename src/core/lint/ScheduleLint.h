#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Reports schedules that never trigger (numbers out of range, 30 February) as errors, and those that probably trigger
/// more often than intended (an hour without a minute) as warnings. Also checks the range of Nice.
void checkSchedule(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
