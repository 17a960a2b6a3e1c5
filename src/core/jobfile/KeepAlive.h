#pragma once

#include <optional>
#include <string_view>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// When launchd restarts the job: always or never (`bool_`), or under conditions. While `bool_` is present the object
/// stands for the plain form, and the conditions it also holds aren't written. See launchd.plist(5).
struct KeepAlive {
  enum class CodingKeys { successfulExit, networkState, pathState, otherJobEnabled, crashed, afterInitialDemand };
  static std::string_view text(CodingKeys key);
  static std::optional<CodingKeys> codingKey(std::string_view text);

  KeepAlive() = default;
  KeepAlive(std::optional<bool> isKeptAlive, std::optional<bool> ifCrashed, std::optional<bool> onSuccessfulExit,
            std::optional<StringMap<bool>> paths, std::optional<StringMap<bool>> jobs);

  std::optional<bool> bool_;
  std::optional<bool> successfulExit;
  std::optional<bool> networkState;
  std::optional<StringMap<bool>> pathState;
  std::optional<StringMap<bool>> otherJobEnabled;
  std::optional<bool> crashed;
  std::optional<bool> afterInitialDemand;

  bool operator==(const KeepAlive&) const = default;
};

/// A value that is neither a boolean nor a dictionary gives an object that holds nothing; a condition of the wrong
/// type is a failure.
void decode(const propertylist::Node& node, const Place& place, KeepAlive& result);
std::optional<propertylist::Value> encode(const KeepAlive& keepAlive);

}  // namespace mirvel::jobfile
