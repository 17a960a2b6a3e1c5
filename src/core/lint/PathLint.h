#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Paths and environment variables that hold what launchd doesn't expand. The command is a matter of CommandLint.h.
void checkPaths(const Subject& subject, const Surroundings& surroundings, Findings& findings);

}  // namespace mirvel::lint
