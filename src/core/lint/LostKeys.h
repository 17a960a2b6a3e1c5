#pragma once

#include "core/lint/Findings.h"
#include "core/lint/Subject.h"

namespace mirvel::lint {

/// What lies below the top-level keys and wouldn't be in the file any more after a save, because the record can't hold
/// it: found by comparing what was read with what would be written.
void checkLostKeys(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
