#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns about nested entries that the record can't represent, because their key is unknown or their value has the
/// wrong type. Finds them by comparing the file with the encoded record. A save preserves them.
void checkNestedKeys(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
