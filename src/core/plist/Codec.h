#pragma once

#include <cstdint>
#include <map>
#include <optional>
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
std::optional<std::int64_t> wholeNumber(const plist::Value& value, WholeReals reals);

void decode(const plist::Value& value, const Place& place, bool& result);
void decode(const plist::Value& value, const Place& place, std::int64_t& result);  ///< whole reals count
void decode(const plist::Value& value, const Place& place, std::string& result);

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

/// The dictionary that the value is, or the failure.
const plist::Dictionary& dictionaryIn(const plist::Value& value, const Place& place);
const plist::Array& arrayIn(const plist::Value& value, const Place& place);

template <typename Element>
void decode(const plist::Value& value, const Place& place, std::vector<Element>& result) {
  const plist::Array& array = arrayIn(value, place);
  result.resize(array.size());
  for (std::size_t i = 0; i < array.size(); ++i) decode(array[i], place.index(i), result[i]);
}

template <typename Element>
void decode(const plist::Value& value, const Place& place, StringMap<Element>& result) {
  for (const auto& entry : dictionaryIn(value, place)) decode(entry.value, place.key(entry.key), result[entry.key]);
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

/// Decodes what can be decoded, and tells whether that worked; an element that can't be is not an error of the whole.
template <typename Element>
bool decodeOrDrop(const plist::Value& value, const Place& place, StringMap<Element>& result, const std::string& key) {
  try {
    Element element;
    decode(value, place, element);
    result.insert_or_assign(key, std::move(element));
    return true;
  } catch (const DecodingFailure&) {
    return false;
  }
}

}  // namespace mirvel::launchd
