#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::Decimal {

/// Parses decimal digits. nullopt for an empty text, for anything but digits (signs and spaces included), and for
/// numbers above 2^63-1.
std::optional<std::int64_t> toInt(std::string_view text);

}  // namespace mirvel::Decimal

/// Permission modes and masks, which are written in octal.
namespace mirvel::Octal {

/// Parses octal digits: "022" gives 18. nullopt as above.
std::optional<std::int64_t> toInt(std::string_view text);

/// A mask as people write it, with at least three octal digits for user, group and others: 18 gives "022". A negative
/// number has no leading zeros: -18 gives "-22".
std::string displayString(std::int64_t mask);

}  // namespace mirvel::Octal
