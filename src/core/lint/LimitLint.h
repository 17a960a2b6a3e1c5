#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about limits that can't be set or end the job at once: hard ones below soft ones, negative ones, no processor
/// time; about negative times; and about an ExitTimeOut of 0, which means to wait forever.
void checkLimits(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
