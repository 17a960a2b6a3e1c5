#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Times that never come, and those that come more often than was probably meant.
void checkSchedule(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
