#include "core/jobfile/LimitLoadToSessionType.h"

#include "core/jobfile/Codec.h"

namespace mirvel::jobfile {

namespace {

void decodeForms(const propertylist::Node& node, const Place& place, LimitLoadToSessionType& result) {
  const auto members = node.dictionary();
  if (members && members->size() == 0) return;
  if (const auto string = node.string()) {
    result = {.types = {std::string(*string)}, .singleValue = true};
  } else if (node.type() == propertylist::Type::Array) {
    decode(node, place, result.types);
  } else {
    failWrongType(node, place, "a string or an array of strings");
  }
}

}  // namespace

void decode(const propertylist::Node& node, const Place& place, LimitLoadToSessionType& result) {
  try {
    decodeForms(node, place, result);
  } catch (DecodingFailure& failure) {
    failNoForm("Limit load to session type error: ", std::move(failure));
  }
}

std::optional<propertylist::Value> encode(const LimitLoadToSessionType& value) {
  if (value.types.empty()) return std::nullopt;
  if (value.singleValue && value.types.size() == 1) return encode(value.types.front());
  return encode(value.types);
}

}  // namespace mirvel::jobfile
