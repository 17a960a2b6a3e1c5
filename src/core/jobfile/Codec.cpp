#include "core/jobfile/Codec.h"

#include <cmath>

namespace mirvel::jobfile {

namespace {

std::optional<std::int64_t> wholeNumber(double real) {
  // 2^63, the first number that doesn't fit; the largest one that does, 2^63 - 1, isn't representable as a double.
  constexpr double limit = 9223372036854775808.0;
  if (!(real >= -limit && real < limit) || std::trunc(real) != real) return std::nullopt;
  return static_cast<std::int64_t>(real);
}

}  // namespace

std::optional<std::int64_t> wholeNumber(const propertylist::Node& node, WholeReals reals) {
  if (const auto integer = node.integer()) return integer->toInt64();
  const auto real = node.real();
  return real && reals == WholeReals::Accepted ? wholeNumber(*real) : std::nullopt;
}

void decode(const propertylist::Node& node, const Place& place, bool& result) {
  const auto boolean = node.boolean();
  if (!boolean) failWrongType(node, place, "a boolean");
  result = *boolean;
}

void decode(const propertylist::Node& node, const Place& place, std::int64_t& result) {
  const auto number = wholeNumber(node, WholeReals::Accepted);
  const bool isTooLarge = node.type() == propertylist::Type::Integer;
  if (!number) failWrongType(node, place, isTooLarge ? "one up to 9223372036854775807" : "an integer");
  result = *number;
}

void decode(const propertylist::Node& node, const Place& place, std::string& result) {
  const auto string = node.string();
  if (!string) failWrongType(node, place, "a string");
  result = *string;
}

propertylist::Members membersOf(const propertylist::Node& node, const Place& place) {
  const auto members = node.dictionary();
  if (!members) failWrongType(node, place, "a dictionary");
  return *members;
}

std::span<const propertylist::Node> elementsOf(const propertylist::Node& node, const Place& place) {
  const auto elements = node.array();
  if (!elements) failWrongType(node, place, "an array");
  return *elements;
}

template <>
std::optional<bool> form(const propertylist::Node& node) {
  return node.boolean();
}

template <>
std::optional<std::int64_t> form(const propertylist::Node& node) {
  return wholeNumber(node, WholeReals::Rejected);
}

template <>
std::optional<double> form(const propertylist::Node& node) {
  return node.real();
}

template <>
std::optional<std::string> form(const propertylist::Node& node) {
  const auto text = node.string();
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

template <>
std::optional<propertylist::Data> form(const propertylist::Node& node) {
  const auto bytes = node.data();
  return bytes ? std::optional(propertylist::Data{std::string(*bytes)}) : std::nullopt;
}

}  // namespace mirvel::jobfile
