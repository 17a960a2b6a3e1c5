#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

struct ParsedInteger {
  std::optional<Integer> number;
  const char* problem = "";  ///< why there is no number: "isn't a number", "is too large" or "is too small"
};

/// Parses the text of an <integer> like macOS: white space (any in Unicode), an optional sign, white space, then
/// decimal digits, or `0x` and hexadecimal digits, up to the very end. The text must not be empty. `0x` alone isn't a
/// number.
///
///     " + 0xFf" -> 255      "-9223372036854775808" -> the smallest integer      "12 " -> isn't a number
ParsedInteger parseInteger(std::string_view text);

/// Parses the text of a <real> like macOS: a decimal number with optional sign, fraction and exponent, or `nan`, or
/// `inf` or `infinity` with an optional sign, in any case. White space (any in Unicode) may precede digits but not a
/// word, and may follow neither. Numbers that are too large become infinite. nullopt for anything else, hexadecimal
/// numbers and decimal commas included.
///
///     "1e3" -> 1000      ".5" -> 0.5      "-InF" -> -infinity      "+nan" -> nullopt      "0x10" -> nullopt
std::optional<double> parseReal(std::string_view text);

/// Formats a real like the macOS writer: printf's `%.17g` (`0.10000000000000001`, `1`, `1e+100`), whatever the locale,
/// and `nan`, `+infinity`, `-infinity`; zero of either sign is `0.0`. `parseReal` reads the same number back.
std::string realText(double number);

}  // namespace mirvel::propertylist
