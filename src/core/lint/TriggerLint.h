#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// A job that nothing in its file ever starts.
void checkTriggers(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
