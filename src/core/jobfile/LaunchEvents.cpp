#include "core/jobfile/LaunchEvents.h"

#include "core/jobfile/Codec.h"

namespace mirvel::jobfile {

namespace {

bool storePlain(const propertylist::Member& member, PlistType& result) {
  return storeForm(member, result.bools) || storeForm(member, result.strings) || storeForm(member, result.integers) ||
         storeForm(member, result.doubles);
}

}  // namespace

void decode(const propertylist::Node& node, const Place& place, LaunchEvents& result) {
  for (const auto& stream : membersOf(node, place)) (void)decodeOrDrop(stream, place, result.dictionaries);
}

void decode(const propertylist::Node& node, const Place& place, LaunchEvents::SubDictionary& result) {
  for (const auto& event : membersOf(node, place)) (void)decodeOrDrop(event, place, result.subDictionaries);
}

void decode(const propertylist::Node& node, const Place& place, PlistType& result) {
  for (const auto& member : membersOf(node, place)) {
    if (storePlain(member, result)) continue;
    // Of a value of an unsupported type only the key is kept, as an array without members.
    const std::string key(member.key());
    if (member.value.type() == propertylist::Type::Dictionary) {
      decode(member.value, place.key(key), result.dictionaries[key]);
    } else {
      decode(member.value, place.key(key), result.arrays[key]);
    }
  }
}

void decode(const propertylist::Node& node, const Place& place, PlistType::SubDictionary& result) {
  decode(node, place, result.subDictionaries);
}

void decode(const propertylist::Node& node, const Place&, PlistType::SubArray& result) {
  result.strings = arrayForm<std::string>(node);
  if (!result.strings) result.integers = arrayForm<std::int64_t>(node);
  if (!result.strings && !result.integers) result.doubles = arrayForm<double>(node);
}

void decode(const propertylist::Node& node, const Place&, PlistType::SubDictionaryType& result) {
  result.bool_ = form<bool>(node);
  result.string = form<std::string>(node);
  result.integer = form<std::int64_t>(node);
  result.double_ = form<double>(node);
  result.data = form<propertylist::Data>(node);
}

std::optional<propertylist::Value> encode(const LaunchEvents& events) {
  return encode(events.dictionaries);
}

std::optional<propertylist::Value> encode(const LaunchEvents::SubDictionary& stream) {
  return encode(stream.subDictionaries);
}

std::optional<propertylist::Value> encode(const PlistType& descriptor) {
  propertylist::Dictionary dictionary;
  encodeInto(dictionary, descriptor.bools);
  encodeInto(dictionary, descriptor.strings);
  encodeInto(dictionary, descriptor.integers);
  encodeInto(dictionary, descriptor.doubles);
  encodeInto(dictionary, descriptor.arrays);
  encodeInto(dictionary, descriptor.dictionaries);
  return propertylist::Value(std::move(dictionary));
}

std::optional<propertylist::Value> encode(const PlistType::SubDictionary& dictionary) {
  return encode(dictionary.subDictionaries);
}

std::optional<propertylist::Value> encode(const PlistType::SubArray& array) {
  return encodeFirst(array.strings, array.integers, array.doubles);
}

std::optional<propertylist::Value> encode(const PlistType::SubDictionaryType& value) {
  return encodeFirst(value.bool_, value.string, value.integer, value.double_, value.data);
}

}  // namespace mirvel::jobfile
