#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about paths, environment variables and labels that contain something launchd doesn't expand, such as `~` or
/// `$HOME`. Program and ProgramArguments are checked by CommandLint.h.
void checkPaths(const Subject& subject, const TargetMachine& machine, Findings& findings);

}  // namespace mirvel::lint
