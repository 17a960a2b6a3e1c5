#pragma once

#include <iosfwd>

#include "core/propertylist/Node.h"

namespace mirvel::ctl {

/// Writes a property list in readable form, one line for each key, element or value, with nested ones indented. Safe
/// for a terminal.
void writeValue(const propertylist::Node& root, std::ostream& out);

}  // namespace mirvel::ctl
