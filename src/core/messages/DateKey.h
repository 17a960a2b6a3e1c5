#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mirvel::messages {

/// A moment as the key of a dictionary: decimal seconds since 1970, to the microsecond, such as "1700000000.25".
std::string dateKey(double seconds);

/// The seconds of such a key; none for any other text, and for times more than a million million seconds from 1970.
std::optional<double> dateOfKey(std::string_view key);

}  // namespace mirvel::messages
