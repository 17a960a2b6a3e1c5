#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mirvel::propertylist {

/// The text of a real as the macOS writer gives it: the manner of printf's `%.17g` (`0.10000000000000001`, `1`,
/// `1e+100`), and `nan`, `+infinity`, `-infinity`; zero of either sign is `0.0`.
std::string realText(double number);

/// The number that macOS reads in the text of a <real>, if it reads one. White space (any of Unicode's) may stand
/// before digits, but not before a word such as `nan`, and never behind either.
std::optional<double> parseReal(std::string_view text);

}  // namespace mirvel::propertylist
