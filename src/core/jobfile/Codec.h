#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/jobfile/DecodingFailure.h"
#include "core/jobfile/StringMap.h"
#include "core/propertylist/Value.h"

/// Conversion between property lists and the types of the record.
///
/// Each type has two overloads. `decode(node, place, result)` fills a default-constructed value and throws
/// `DecodingFailure` for a node that doesn't fit; at a tolerant place, containers skip such nodes instead. `encode`
/// returns the value to write, or nothing if it has no representation in a file. This header has the overloads for
/// plain types, lists and dictionaries; the types of single keys declare their own next to the type.
namespace mirvel::jobfile {

/// Whether 3.0 is accepted for 3.
enum class WholeReals { Accepted, Rejected };

/// The number of an integer, or of an accepted real without a fraction. None for any other node, and for numbers that
/// don't fit into a signed 64-bit integer (a file can contain unsigned ones up to 2^64 - 1).
std::optional<std::int64_t> wholeNumber(const propertylist::Node& node, WholeReals reals);

/// Only booleans: 0, 1 and "true" are failures.
void decode(const propertylist::Node& node, const Place& place, bool& result);
/// Integers that fit into 64 bits, and reals without a fraction.
void decode(const propertylist::Node& node, const Place& place, std::int64_t& result);
/// Only strings; they may be empty.
void decode(const propertylist::Node& node, const Place& place, std::string& result);

/// Plain values always have a representation.
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

/// The content of a dictionary or array. Throws `DecodingFailure` if the node is something else.
propertylist::Members membersOf(const propertylist::Node& node, const Place& place);
std::span<const propertylist::Node> elementsOf(const propertylist::Node& node, const Place& place);

/// Fails if any element does, even at a tolerant place: without the element, the others would change their meaning.
template <typename Element>
void decode(const propertylist::Node& node, const Place& place, std::vector<Element>& result) {
  const auto elements = elementsOf(node, place);
  result.resize(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) decode(elements[i], place.index(i), result[i]);
}

/// Decodes an entry into `result`, replacing one of the same key. Returns false, with `result` unchanged, if the entry
/// doesn't fit; it then stays in the file as an opaque value.
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

/// At a tolerant place, skips entries that don't fit.
template <typename Element>
void decode(const propertylist::Node& node, const Place& place, StringMap<Element>& result) {
  for (const auto& member : membersOf(node, place)) {
    if (place.isTolerant()) {
      (void)decodeOrDrop(member, place, result);  // the file keeps the entry
    } else {
      decode(member.value, place.key(member.key()), result[std::string(member.key())]);
    }
  }
}

/// An array of the elements that have a representation, possibly empty.
template <typename Element>
std::optional<propertylist::Value> encode(const std::vector<Element>& elements) {
  propertylist::Array array;
  array.reserve(elements.size());
  for (const Element& element : elements) {
    if (auto value = encode(element)) array.push_back(std::move(*value));
  }
  return propertylist::Value(std::move(array));
}

/// Adds the entries that have a representation to `dictionary`.
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

// Some keys allow values of several types. Their records have a field or map ("bucket") for each type, and these
// functions fill the one that matches. None of them throws.

/// The value if the node has exactly this type: 1 isn't a real and 1.0 isn't an integer, so that reading and writing
/// doesn't change the type.
template <typename Form>
std::optional<Form> form(const propertylist::Node& node) = delete;

template <>
std::optional<bool> form(const propertylist::Node& node);
template <>
std::optional<std::int64_t> form(const propertylist::Node& node);
template <>
std::optional<double> form(const propertylist::Node& node);
template <>
std::optional<std::string> form(const propertylist::Node& node);
template <>
std::optional<propertylist::Data> form(const propertylist::Node& node);

/// The elements of an array if all have this type, which is true of an empty array. None for any other node.
template <typename Form>
std::optional<std::vector<Form>> arrayForm(const propertylist::Node& node) {
  const auto array = node.array();
  if (!array) return std::nullopt;
  std::vector<Form> elements;
  elements.reserve(array->size());
  for (const propertylist::Node& element : *array) {
    auto found = form<Form>(element);
    if (!found) return std::nullopt;
    elements.push_back(std::move(*found));
  }
  return elements;
}

/// Stores the entry in `bucket` if its value has this type. Returns whether it has.
template <typename Form>
bool storeForm(const propertylist::Member& member, StringMap<Form>& bucket) {
  auto found = form<Form>(member.value);
  if (found) bucket.insert_or_assign(std::string(member.key()), std::move(*found));
  return found.has_value();
}

/// The first of the forms that is present; none if all are absent.
template <typename... Forms>
std::optional<propertylist::Value> encodeFirst(const std::optional<Forms>&... forms) {
  std::optional<propertylist::Value> result;
  (void)((forms && (result = encode(*forms), true)) || ...);
  return result;
}

}  // namespace mirvel::jobfile
