#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/plist/DecodingFailure.h"
#include "core/plist/StringMap.h"

/// The values of a job file from and to property lists. Each type of the record has two functions: `decode`, which
/// fills a fresh value and throws `DecodingFailure`, and `encode`, which gives nothing for a value that has no form in
/// the file. Here are those of the plain types and of lists and dictionaries; the record's own types declare theirs.
namespace mirvel::launchd {

/// The number of an integer that 64 bits with a sign hold; with `WholeReals::Count` also of a real without a fraction.
enum class WholeReals { Count, DontCount };
std::optional<std::int64_t> wholeNumber(const plist::Node& node, WholeReals reals);

void decode(const plist::Node& node, const Place& place, bool& result);
void decode(const plist::Node& node, const Place& place, std::int64_t& result);  ///< whole reals count
void decode(const plist::Node& node, const Place& place, std::string& result);

inline std::optional<plist::Value> encode(bool value) {
  return plist::Value(value);
}
inline std::optional<plist::Value> encode(std::int64_t value) {
  return plist::Value(value);
}
inline std::optional<plist::Value> encode(double value) {
  return plist::Value(value);
}
inline std::optional<plist::Value> encode(const std::string& value) {
  return plist::Value(value);
}
inline std::optional<plist::Value> encode(const plist::Data& value) {
  return plist::Value(value);
}

/// What the dictionary or array holds that the value must be.
plist::Members membersOf(const plist::Node& node, const Place& place);
std::span<const plist::Node> elementsOf(const plist::Node& node, const Place& place);

template <typename Element>
void decode(const plist::Node& node, const Place& place, std::vector<Element>& result) {
  const auto elements = elementsOf(node, place);
  result.resize(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) decode(elements[i], place.index(i), result[i]);
}

/// Decodes what can be decoded, and tells whether that worked; an element that can't be is not an error of the whole.
template <typename Element>
bool decodeOrDrop(const plist::Member& member, const Place& place, StringMap<Element>& result) {
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
void decode(const plist::Node& node, const Place& place, StringMap<Element>& result) {
  for (const auto& member : membersOf(node, place)) {
    if (place.isTolerant()) {
      (void)decodeOrDrop(member, place, result);  // the file keeps it
    } else {
      decode(member.value, place.key(member.key()), result[std::string(member.key())]);
    }
  }
}

template <typename Element>
std::optional<plist::Value> encode(const std::vector<Element>& elements) {
  plist::Array array;
  array.reserve(elements.size());
  for (const Element& element : elements) {
    if (auto value = encode(element)) array.push_back(std::move(*value));
  }
  return plist::Value(std::move(array));
}

/// Adds each element that has a form in the file under its key.
template <typename Element>
void encodeInto(plist::Dictionary& dictionary, const StringMap<Element>& elements) {
  for (const auto& [key, element] : elements) {
    if (auto value = encode(element)) dictionary.set(key, std::move(*value));
  }
}

template <typename Element>
std::optional<plist::Value> encode(const StringMap<Element>& elements) {
  plist::Dictionary dictionary;
  encodeInto(dictionary, elements);
  return plist::Value(std::move(dictionary));
}

}  // namespace mirvel::launchd
