#pragma once

#include <string>

namespace mirvel {

/// A field that can't be saved as it stands.
struct InvalidField {
  std::string message;  ///< which one it is
  std::string reason;   ///< what is wrong with it

  bool operator==(const InvalidField&) const = default;
};

}  // namespace mirvel
