#pragma once

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// What lies below the top-level keys and means nothing to the record, because its key is unknown or its value doesn't
/// fit: found by comparing what was read with what the record makes of it. A save keeps it as it is.
void checkNestedKeys(const Subject& subject, Findings& findings);

}  // namespace mirvel::lint
