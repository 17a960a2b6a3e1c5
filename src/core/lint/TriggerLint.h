#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about a job that no key of its file ever starts.
void checkTriggers(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
