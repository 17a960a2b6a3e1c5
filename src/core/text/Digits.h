#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace mirvel {

/// Parses digits of a base from 2 to 10. nullopt for an empty text, for anything but digits (signs and spaces
/// included), and for numbers above 2^63-1.
std::optional<std::int64_t> parseDigits(std::string_view text, int base);

namespace Decimal {

/// `parseDigits` in base 10.
std::optional<std::int64_t> toInt(std::string_view text);

}  // namespace Decimal

}  // namespace mirvel
