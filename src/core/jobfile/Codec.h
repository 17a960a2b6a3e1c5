#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/jobfile/DecodingFailure.h"
#include "core/jobfile/StringMap.h"

/// The values of a job file from and to property lists. Each type of the record has two functions: `decode`, which
/// fills a fresh value and throws `DecodingFailure`, and `encode`, which gives nothing for a value that has no form in
/// the file. Here are those of the plain types and of lists and dictionaries; the record's own types declare theirs.
namespace mirvel::jobfile {

/// The number of an integer that 64 bits with a sign hold; with `WholeReals::Count` also of a real without a fraction.
enum class WholeReals { Count, DontCount };
std::optional<std::int64_t> wholeNumber(const propertylist::Node& node, WholeReals reals);

void decode(const propertylist::Node& node, const Place& place, bool& result);
void decode(const propertylist::Node& node, const Place& place, std::int64_t& result);  ///< whole reals count
void decode(const propertylist::Node& node, const Place& place, std::string& result);

inline std::optional<propertylist::Value> encode(bool value) {
  return propertylist::Value(value);
}
inline std::optional<propertylist::Value> encode(std::int64_t value) {
  return propertylist::Value(value);
}
inline std::optional<propertylist::Value> encode(double value) {
  return propertylist::Value(value);
}
inline std::optional<propertylist::Value> encode(const std::string& value) {
  return propertylist::Value(value);
}
inline std::optional<propertylist::Value> encode(const propertylist::Data& value) {
  return propertylist::Value(value);
}

/// What the dictionary or array holds that the value must be.
propertylist::Members membersOf(const propertylist::Node& node, const Place& place);
std::span<const propertylist::Node> elementsOf(const propertylist::Node& node, const Place& place);

template <typename Element>
void decode(const propertylist::Node& node, const Place& place, std::vector<Element>& result) {
  const auto elements = elementsOf(node, place);
  result.resize(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) decode(elements[i], place.index(i), result[i]);
}

/// Decodes what can be decoded, and tells whether that worked; an element that can't be is not an error of the whole.
template <typename Element>
bool decodeOrDrop(const propertylist::Member& member, const Place& place, StringMap<Element>& result) {
  try {
    Element element;
    decode(member.value, place.key(member.key()), element);
    result.insert_or_assign(std::string(member.key()), std::move(element));
    return true;
  } catch (const DecodingFailure&) {
    return false;
  }
}

template <typename Element>
void decode(const propertylist::Node& node, const Place& place, StringMap<Element>& result) {
  for (const auto& member : membersOf(node, place)) {
    if (place.isTolerant()) {
      (void)decodeOrDrop(member, place, result);  // the file keeps it
    } else {
      decode(member.value, place.key(member.key()), result[std::string(member.key())]);
    }
  }
}

template <typename Element>
std::optional<propertylist::Value> encode(const std::vector<Element>& elements) {
  propertylist::Array array;
  array.reserve(elements.size());
  for (const Element& element : elements) {
    if (auto value = encode(element)) array.push_back(std::move(*value));
  }
  return propertylist::Value(std::move(array));
}

/// Adds each element that has a form in the file under its key.
template <typename Element>
void encodeInto(propertylist::Dictionary& dictionary, const StringMap<Element>& elements) {
  for (const auto& [key, element] : elements) {
    if (auto value = encode(element)) dictionary.set(key, std::move(*value));
  }
}

template <typename Element>
std::optional<propertylist::Value> encode(const StringMap<Element>& elements) {
  propertylist::Dictionary dictionary;
  encodeInto(dictionary, elements);
  return propertylist::Value(std::move(dictionary));
}

}  // namespace mirvel::jobfile
