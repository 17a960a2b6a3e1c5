#include "core/plist/LimitLoadToSessionType.h"

#include "core/plist/Codec.h"

namespace mirvel::launchd {

namespace {

void decodeForms(const plist::Value& value, const Place& place, LimitLoadToSessionType& result) {
  const auto* dictionary = value.as<plist::Dictionary>();
  if (dictionary && dictionary->empty()) return;
  if (const auto* string = value.as<std::string>()) {
    result = {.types = {*string}, .singleValue = true};
  } else if (value.type() == plist::Type::Array) {
    decode(value, place, result.types);
  } else {
    failWrongType(value, place, "a string or an array of strings");
  }
}

}  // namespace

void decode(const plist::Value& value, const Place& place, LimitLoadToSessionType& result) {
  try {
    decodeForms(value, place, result);
  } catch (DecodingFailure& failure) {
    failNoForm("Limit load to session type error: ", std::move(failure));
  }
}

std::optional<plist::Value> encode(const LimitLoadToSessionType& value) {
  if (value.types.empty()) return std::nullopt;
  if (value.singleValue && value.types.size() == 1) return encode(value.types.front());
  return encode(value.types);
}

}  // namespace mirvel::launchd
