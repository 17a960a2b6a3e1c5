#pragma once

#include <string>

#include "core/locale/Localize.h"
#include "core/propertylist/Value.h"

namespace mirvel {

/// Any value as a text to be read: a dictionary or array over several lines, what is inside them indented, data as its
/// size. What would be longer than anyone reads ends in an ellipsis, and the rest isn't looked at.
std::string description(const propertylist::Value& value, const Localize& localize);

}  // namespace mirvel
