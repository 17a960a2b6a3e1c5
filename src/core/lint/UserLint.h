#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about users and groups that don't exist, and about keys that launchd ignores because only daemons, or only
/// agents, can have them.
void checkUsers(const Subject& subject, const TargetMachine& machine, Findings& findings);

}  // namespace mirvel::lint
