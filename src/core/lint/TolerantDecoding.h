#pragma once

#include <optional>

#include "core/lint/Findings.h"
#include "core/propertylist/Node.h"

namespace mirvel::lint {

/// Decodes a job file repeatedly, each time without the key that was rejected, so that all errors are found in one run
/// and the other keys can still be checked. A missing label is an error too. Null if the list isn't a dictionary.
std::optional<Subject> decodeTolerantly(const propertylist::Node& root, Findings& findings);

}  // namespace mirvel::lint
