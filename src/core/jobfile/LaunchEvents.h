#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/StringMap.h"
#include "core/propertylist/Node.h"
#include "core/propertylist/Value.h"

namespace mirvel::jobfile {

class Place;

/// The descriptor of a launch event: values whose keys and types depend on the event stream, in one bucket per type. It
/// represents plain values, arrays of one plain type, and dictionaries of plain values; everything else stays in the
/// file as an opaque value.
struct PlistType {
  /// An array; at most one member is present. None is if the elements differ in type or aren't plain, or if the value
  /// is no array. An empty array counts as one of strings.
  struct SubArray {
    std::optional<std::vector<std::string>> strings = {};
    std::optional<std::vector<std::int64_t>> integers = {};
    std::optional<std::vector<double>> doubles = {};

    bool operator==(const SubArray&) const = default;
  };

  /// A value in a nested dictionary; at most one member is present, and none for any other type.
  struct SubDictionaryType {
    std::optional<bool> bool_ = {};
    std::optional<std::string> string = {};
    std::optional<std::int64_t> integer = {};
    std::optional<double> double_ = {};
    std::optional<propertylist::Data> data = {};

    bool operator==(const SubDictionaryType&) const = default;
  };

  /// A nested dictionary; of its entries, only plain values are represented.
  struct SubDictionary {
    StringMap<SubDictionaryType> subDictionaries = {};

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<bool> bools = {};
  StringMap<std::string> strings = {};
  StringMap<std::int64_t> integers = {};
  StringMap<double> doubles = {};
  StringMap<SubArray> arrays = {};  ///< also, with no member present, values of types that aren't supported
  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const PlistType&) const = default;
};

/// The key `LaunchEvents`: events that start the job, by event stream (such as "com.apple.iokit.matching") and then by
/// a name of the job's choosing. See xpc_events(3).
struct LaunchEvents {
  /// The descriptors of the events of one stream, by name.
  struct SubDictionary {
    StringMap<PlistType> subDictionaries = {};

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const LaunchEvents&) const = default;
};

/// Fails only if the value isn't a dictionary. Streams and events that aren't dictionaries are skipped.
void decode(const propertylist::Node& node, const Place& place, LaunchEvents& result);
void decode(const propertylist::Node& node, const Place& place, LaunchEvents::SubDictionary& result);
void decode(const propertylist::Node& node, const Place& place, PlistType& result);
void decode(const propertylist::Node& node, const Place& place, PlistType::SubDictionary& result);
/// These two never fail.
void decode(const propertylist::Node& node, const Place& place, PlistType::SubArray& result);
void decode(const propertylist::Node& node, const Place& place, PlistType::SubDictionaryType& result);

/// A dictionary, possibly empty.
std::optional<propertylist::Value> encode(const LaunchEvents& events);
std::optional<propertylist::Value> encode(const LaunchEvents::SubDictionary& stream);
std::optional<propertylist::Value> encode(const PlistType& descriptor);
std::optional<propertylist::Value> encode(const PlistType::SubDictionary& dictionary);
/// None if no member is present.
std::optional<propertylist::Value> encode(const PlistType::SubArray& array);
std::optional<propertylist::Value> encode(const PlistType::SubDictionaryType& value);

}  // namespace mirvel::jobfile
