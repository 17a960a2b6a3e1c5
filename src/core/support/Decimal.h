#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace mirvel::Decimal {

/// The number of one or more decimal digits and nothing else, if 63 bits hold it.
std::optional<std::int64_t> toInt(std::string_view text);

}  // namespace mirvel::Decimal
