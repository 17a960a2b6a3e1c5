#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Checks the files and folders that a job uses: those that have to exist and don't, folders in place of files, a
/// program or script that every user could change, and output into the job's own input. The existence of the program is
/// checked by CommandLint.h. With RootDirectory, paths aren't those of this machine, and only that folder is checked.
void checkFiles(const Subject& subject, const TargetMachine& machine, Findings& findings);

}  // namespace mirvel::lint
