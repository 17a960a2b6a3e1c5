#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

struct ParsedInteger {
  std::optional<Integer> number;
  const char* problem = "";  ///< if there is no number: why, as in "is no number"
};

/// The number that macOS reads in the text of an <integer>: white space (any of Unicode's), a sign, white space, then
/// decimal digits or `0x` and hexadecimal ones, up to the very end.
ParsedInteger parseInteger(std::string_view text);

/// The number that macOS reads in the text of a <real>, if it reads one. White space (any of Unicode's) may precede
/// digits, but not a word such as `nan`, and may follow neither.
std::optional<double> parseReal(std::string_view text);

/// The text of a real as the macOS writer gives it: the manner of printf's `%.17g` (`0.10000000000000001`, `1`,
/// `1e+100`), and `nan`, `+infinity`, `-infinity`; zero of either sign is `0.0`.
std::string realText(double number);

}  // namespace mirvel::propertylist
