#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The key `LimitLoadToSessionType`: the types of session in which launchd loads an agent. It has no effect on daemons.
/// Without the key, agents are loaded in "Aqua" sessions only, that is, graphical ones.
struct LimitLoadToSessionType {
  /// The session types that launchd knows. `types` can contain others.
  static constexpr std::array<std::string_view, 4> agents = {"Aqua", "Background", "LoginWindow", "StandardIO"};

  std::vector<std::string> types = {};
  bool singleValue = false;  ///< the file has a string instead of an array; kept when there is exactly one type

  bool operator==(const LimitLoadToSessionType&) const = default;
};

/// Fails with `NoForm` unless the value is a string or an array of strings. Tolerates an empty dictionary, which some
/// programs write for an empty list; it yields no types.
void decode(const propertylist::Node& node, const Place& place, LimitLoadToSessionType& result);
/// None if there are no types.
std::optional<propertylist::Value> encode(const LimitLoadToSessionType& value);

}  // namespace mirvel::jobfile
