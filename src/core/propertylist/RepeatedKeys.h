#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

/// Which entry stays when a key is repeated.
enum class Repeated { FirstWins, LastWins };

/// Takes entries out whose key was there before, and gives the count of those that stay, in front and in order. The
/// entries lie as key, value, key, value. `report` hears of every repeated key.
std::size_t dropRepeatedKeys(std::span<Node> entries, Repeated repeated,
                             const std::function<void(std::string_view key)>& report);

}  // namespace mirvel::propertylist
