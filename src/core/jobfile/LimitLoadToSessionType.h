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

/// The sessions in which launchd loads an agent. Any text is kept, whether or not it is one of `Agent`.
struct LimitLoadToSessionType {
  /// The session types that launchd knows.
  enum class Agent { aqua, background, loginWindow, standardIO };
  static constexpr std::array<std::string_view, 4> agents = {"Aqua", "Background", "LoginWindow", "StandardIO"};
  static constexpr std::string_view text(Agent agent) { return agents[static_cast<std::size_t>(agent)]; }

  std::vector<std::string> types = {};
  bool singleValue = false;  ///< the file held one string, no array; a single type is written so again

  bool operator==(const LimitLoadToSessionType&) const = default;
};

/// Neither a string nor an array of strings is a failure of code `NoForm`. An empty dictionary, which some programs
/// leave for an empty list, gives no types.
void decode(const propertylist::Node& node, const Place& place, LimitLoadToSessionType& result);
/// Nothing where there are no types.
std::optional<propertylist::Value> encode(const LimitLoadToSessionType& value);

}  // namespace mirvel::jobfile
