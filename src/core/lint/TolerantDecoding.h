#pragma once

#include <optional>

#include "core/lint/Findings.h"
#include "core/propertylist/Node.h"

namespace mirvel::lint {

/// Decodes a job file again and again, each time without the key that was refused, so that one run tells all errors and
/// the rest can be checked. A missing label is an error too. Nothing for a list that isn't a dictionary.
std::optional<Subject> decodeTolerantly(const propertylist::Node& root, Findings& findings);

}  // namespace mirvel::lint
