#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Unknown keys with what was probably meant, deprecated keys, and misspelt words where a key takes one of a few.
void checkKeys(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
