#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Checks Program and ProgramArguments: a missing program, a path that isn't absolute or doesn't exist, placeholders,
/// and arguments that only a shell would interpret. Jobs with BundleProgram are only checked for their arguments, since
/// their paths are relative to the bundle.
void checkCommand(const Subject& subject, const TargetMachine& machine, Findings& findings);

}  // namespace mirvel::lint
