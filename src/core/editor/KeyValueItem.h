#pragma once

#include <string>

#include "core/propertylist/Value.h"

namespace mirvel {

/// A row of keys and values that can only be read: a boolean is shown as a check box, a string as it stands, anything
/// else as a description.
struct KeyValueItem {
  std::string key;
  propertylist::Value value;

  bool operator==(const KeyValueItem&) const = default;
};

}  // namespace mirvel
