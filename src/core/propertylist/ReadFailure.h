#pragma once

#include <cstddef>
#include <string>

#include "core/support/Error.h"

namespace mirvel::plist {

/// Carries a refusal from the depth of a reader to `read`, and no further.
struct ReadFailure {
  std::string message;
  std::size_t offset;  ///< in the text or list being read
  Error::Code code = Error::Code::Malformed;
};

}  // namespace mirvel::plist
