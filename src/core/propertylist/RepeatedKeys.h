#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "core/propertylist/Node.h"

namespace mirvel::propertylist {

/// Which value of a repeated key counts: the two forms differ, as on macOS.
enum class Repeated { FirstWins, LastWins };

/// Removes entries with a repeated key. `entries` are key, value, key, value; those that remain are moved to the front,
/// each at the place of its key's first occurrence, and their number is returned. `report` is called with the key of
/// each removed entry, in order. Takes n log n time for any keys.
std::size_t dropRepeatedKeys(std::span<Node> entries, Repeated repeated,
                             const std::function<void(std::string_view key)>& report);

}  // namespace mirvel::propertylist
