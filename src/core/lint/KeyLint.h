#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about unknown keys (with a suggestion if one is close), deprecated keys, an empty label, and misspelt values
/// of keys that accept a few fixed words, such as ProcessType.
void checkKeys(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
