#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace mirvel::Decimal {

/// The number of one or more decimal digits and nothing else, if 63 bits hold it.
std::optional<std::int64_t> toInt(std::string_view text);

}  // namespace mirvel::Decimal

/// Permission masks as octal text.
namespace mirvel::Octal {

/// The number of one or more octal digits and nothing else, if 63 bits hold it: 18 of "022".
std::optional<std::int64_t> toInt(std::string_view text);

/// The octal digits of a number, without a leading zero: "22" of 18. A negative number gives the digits of its size,
/// behind a minus sign.
std::string fromInt(std::int64_t number);

/// A mask as people write it, with a digit for each of user, group and others: "022" of 18, and more digits of a larger
/// number.
std::string displayString(std::int64_t mask);

}  // namespace mirvel::Octal
