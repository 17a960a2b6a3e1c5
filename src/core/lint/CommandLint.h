#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// What launchd can't run: no program, a path that isn't absolute or leads nowhere, and arguments that only a shell
/// would understand.
void checkCommand(const Subject& subject, const Surroundings& surroundings, Findings& findings);

}  // namespace mirvel::lint
