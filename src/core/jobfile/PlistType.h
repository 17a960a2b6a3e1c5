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

/// The descriptor of a launch event: values under keys of the event's choosing, in one bucket for each type. What the
/// types here can't hold stays in the file, and is opaque.
struct PlistType {
  /// An array of one type; nothing is present where the file held a mixed one, or no array at all.
  struct SubArray {
    std::optional<std::vector<std::string>> strings = {};
    std::optional<std::vector<std::int64_t>> integers = {};
    std::optional<std::vector<double>> doubles = {};

    bool operator==(const SubArray&) const = default;
  };

  /// One value of a plain type; nothing is present where the file held another.
  struct SubDictionaryType {
    std::optional<bool> bool_ = {};
    std::optional<std::string> string = {};
    std::optional<std::int64_t> integer = {};
    std::optional<double> double_ = {};
    std::optional<propertylist::Data> data = {};

    bool operator==(const SubDictionaryType&) const = default;
  };

  struct SubDictionary {
    StringMap<SubDictionaryType> subDictionaries = {};

    bool operator==(const SubDictionary&) const = default;
  };

  StringMap<bool> bools = {};
  StringMap<std::string> strings = {};
  StringMap<std::int64_t> integers = {};
  StringMap<double> doubles = {};
  StringMap<SubArray> arrays = {};
  StringMap<SubDictionary> dictionaries = {};

  bool operator==(const PlistType&) const = default;
};

void decode(const propertylist::Node& node, const Place& place, PlistType& result);
void decode(const propertylist::Node& node, const Place& place, PlistType::SubDictionary& result);
/// These two never fail.
void decode(const propertylist::Node& node, const Place& place, PlistType::SubArray& result);
void decode(const propertylist::Node& node, const Place& place, PlistType::SubDictionaryType& result);

std::optional<propertylist::Value> encode(const PlistType& descriptor);
std::optional<propertylist::Value> encode(const PlistType::SubDictionary& dictionary);
std::optional<propertylist::Value> encode(const PlistType::SubArray& array);
std::optional<propertylist::Value> encode(const PlistType::SubDictionaryType& value);

}  // namespace mirvel::jobfile
