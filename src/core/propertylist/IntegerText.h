#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

struct ParsedInteger {
  std::optional<Integer> number;
  const char* problem = "";  ///< where there is no number: why, as in "is no number"
};

/// The number that macOS reads in the text of an <integer>: white space (any of Unicode's), a sign, white space, then
/// decimal digits or `0x` and hexadecimal ones, up to the very end.
ParsedInteger parseInteger(std::string_view text);

}  // namespace mirvel::propertylist
