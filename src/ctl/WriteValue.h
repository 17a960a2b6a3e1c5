#pragma once

#include <iosfwd>

#include "core/propertylist/Node.h"

namespace mirvel::ctl {

/// Writes a property list for a person: one line for each key, element or value, what lies deeper indented. Safe for a
/// terminal.
void writeValue(const propertylist::Node& root, std::ostream& out);

}  // namespace mirvel::ctl
