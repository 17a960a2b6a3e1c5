#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The key `KeepAlive`: whether launchd restarts the job when it ends. Either a boolean, or a dictionary of conditions
/// of which one that holds is enough. See launchd.plist(5).
struct KeepAlive {
  enum class CodingKeys { SuccessfulExit, NetworkState, PathState, OtherJobEnabled, Crashed, AfterInitialDemand };
  /// The keys of the conditions as in the file, in the order of the enumeration.
  static constexpr std::array<std::string_view, 6> keyTexts = {"SuccessfulExit",  "NetworkState", "PathState",
                                                               "OtherJobEnabled", "Crashed",      "AfterInitialDemand"};
  static constexpr std::string_view text(CodingKeys key) { return keyTexts[static_cast<std::size_t>(key)]; }

  /// The boolean form. While present, it alone is written; conditions are kept but have no effect. Absent: the value is
  /// a dictionary.
  std::optional<bool> bool_ = {};
  /// True: restart after exit status 0. False: after any other. Implies `RunAtLoad`.
  std::optional<bool> successfulExit = {};
  /// While a network is up, or while none is. launchd no longer implements it.
  std::optional<bool> networkState = {};
  /// By path. True: while it exists. False: while it doesn't.
  std::optional<StringMap<bool>> pathState = {};
  /// By label. True: while that job is loaded. False: while it isn't.
  std::optional<StringMap<bool>> otherJobEnabled = {};
  /// True: restart after a signal that indicates a crash, such as SIGSEGV. False: after anything else.
  std::optional<bool> crashed = {};
  /// The conditions apply only once the job has been started on demand for the first time.
  std::optional<bool> afterInitialDemand = {};

  bool operator==(const KeepAlive&) const = default;
};

/// Fails if a condition has the wrong type. Tolerates a value that is neither boolean nor dictionary, which yields an
/// empty object, and ignores unknown conditions.
void decode(const propertylist::Node& node, const Place& place, KeepAlive& result);
/// The boolean if present, else the conditions as a dictionary, possibly empty.
std::optional<propertylist::Value> encode(const KeepAlive& keepAlive);

}  // namespace mirvel::jobfile
