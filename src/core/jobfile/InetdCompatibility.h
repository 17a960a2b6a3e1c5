#pragma once

#include <cstdint>
#include <optional>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// How the job wants to be started as inetd(8) would. Deprecated in job files.
struct InetdCompatibility {
  StringMap<bool> bools = {};
  StringMap<std::int64_t> integers = {};

  bool operator==(const InetdCompatibility&) const = default;
};

/// A key that fits no bucket is dropped; only a value that isn't a dictionary is a failure.
void decode(const propertylist::Node& node, const Place& place, InetdCompatibility& result);
std::optional<propertylist::Value> encode(const InetdCompatibility& inetd);

}  // namespace mirvel::jobfile
