#pragma once

#include <string>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

/// The XML form, byte for byte as the macOS writer gives it. Fails for a list that holds a set, which XML can't.
Result<std::string> writeXml(const Value& value);

/// The binary form. Equal strings are written once.
std::string writeBinary(const Value& value);

}  // namespace mirvel::propertylist
