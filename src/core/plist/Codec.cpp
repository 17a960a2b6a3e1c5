#include "core/plist/Codec.h"

#include <cmath>

namespace mirvel::launchd {

namespace {

std::optional<std::int64_t> wholeNumber(double real) {
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (!(real >= -limit && real < limit) || std::trunc(real) != real) return std::nullopt;
  return static_cast<std::int64_t>(real);
}

}  // namespace

std::optional<std::int64_t> wholeNumber(const plist::Value& value, WholeReals reals) {
  if (const auto* integer = value.as<plist::Integer>()) return integer->toInt64();
  const auto* real = value.as<double>();
  return real && reals == WholeReals::Count ? wholeNumber(*real) : std::nullopt;
}

void decode(const plist::Value& value, const Place& place, bool& result) {
  const auto* boolean = value.as<bool>();
  if (!boolean) failWrongType(value, place, "a boolean");
  result = *boolean;
}

void decode(const plist::Value& value, const Place& place, std::int64_t& result) {
  const auto number = wholeNumber(value, WholeReals::Count);
  const bool isTooLarge = value.type() == plist::Type::Integer;
  if (!number) failWrongType(value, place, isTooLarge ? "one up to 9223372036854775807" : "an integer");
  result = *number;
}

void decode(const plist::Value& value, const Place& place, std::string& result) {
  const auto* string = value.as<std::string>();
  if (!string) failWrongType(value, place, "a string");
  result = *string;
}

const plist::Dictionary& dictionaryIn(const plist::Value& value, const Place& place) {
  const auto* dictionary = value.as<plist::Dictionary>();
  if (!dictionary) failWrongType(value, place, "a dictionary");
  return *dictionary;
}

const plist::Array& arrayIn(const plist::Value& value, const Place& place) {
  const auto* array = value.as<plist::Array>();
  if (!array) failWrongType(value, place, "an array");
  return *array;
}

}  // namespace mirvel::launchd
