#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mirvel::wire {

/// A moment as the key of a dictionary: its decimal seconds since 1970, to the microsecond, such as "1700000000.25".
std::string dateKey(double seconds);

/// The seconds of such a key; none for another text.
std::optional<double> dateOfKey(std::string_view key);

}  // namespace mirvel::wire
