#include "core/plist/PlistType.h"

#include "core/plist/Forms.h"

namespace mirvel::launchd {

namespace {

bool storePlain(const plist::Value& value, PlistType& result, const std::string& key) {
  return storeForm(value, result.bools, key) || storeForm(value, result.strings, key) ||
         storeForm(value, result.integers, key) || storeForm(value, result.doubles, key);
}

}  // namespace

void decode(const plist::Value& value, const Place& place, PlistType& result) {
  for (const auto& [key, element] : dictionaryIn(value, place)) {
    if (storePlain(element, result, key)) continue;
    if (element.type() == plist::Type::Dictionary) {
      decode(element, place.key(key), result.dictionaries[key]);
    } else {
      decode(element, place.key(key), result.arrays[key]);
    }
  }
}

void decode(const plist::Value& value, const Place& place, PlistType::SubDictionary& result) {
  decode(value, place, result.subDictionaries);
}

void decode(const plist::Value& value, const Place&, PlistType::SubArray& result) {
  result.strings = arrayForm<std::string>(value);
  if (!result.strings) result.integers = arrayForm<std::int64_t>(value);
  if (!result.strings && !result.integers) result.doubles = arrayForm<double>(value);
}

void decode(const plist::Value& value, const Place&, PlistType::SubDictionaryType& result) {
  result.bool_ = form<bool>(value);
  result.string = form<std::string>(value);
  result.integer = form<std::int64_t>(value);
  result.double_ = form<double>(value);
  result.data = form<plist::Data>(value);
}

std::optional<plist::Value> encode(const PlistType& descriptor) {
  plist::Dictionary dictionary;
  encodeInto(dictionary, descriptor.bools);
  encodeInto(dictionary, descriptor.strings);
  encodeInto(dictionary, descriptor.integers);
  encodeInto(dictionary, descriptor.doubles);
  encodeInto(dictionary, descriptor.arrays);
  encodeInto(dictionary, descriptor.dictionaries);
  return plist::Value(std::move(dictionary));
}

std::optional<plist::Value> encode(const PlistType::SubDictionary& dictionary) {
  return encode(dictionary.subDictionaries);
}

std::optional<plist::Value> encode(const PlistType::SubArray& array) {
  return encodeFirst(array.strings, array.integers, array.doubles);
}

std::optional<plist::Value> encode(const PlistType::SubDictionaryType& value) {
  return encodeFirst(value.bool_, value.string, value.integer, value.double_, value.data);
}

}  // namespace mirvel::launchd
