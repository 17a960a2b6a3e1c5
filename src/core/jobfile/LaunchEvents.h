#pragma once

#include <optional>

#include "core/jobfile/PlistType.h"
#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The events that start the job: by event stream, then by name. See xpc_events(3).
struct LaunchEvents {
  /// The events of one stream.
  struct SubDictionary {
    StringMap<PlistType> subDictionaries = {};

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const LaunchEvents&) const = default;
};

/// A stream or event that isn't a dictionary is dropped; only the whole being none is a failure.
void decode(const propertylist::Node& node, const Place& place, LaunchEvents& result);
void decode(const propertylist::Node& node, const Place& place, LaunchEvents::SubDictionary& result);
std::optional<propertylist::Value> encode(const LaunchEvents& events);
std::optional<propertylist::Value> encode(const LaunchEvents::SubDictionary& stream);

}  // namespace mirvel::jobfile
