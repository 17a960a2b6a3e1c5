#include "core/jobfile/Forms.h"

namespace mirvel::jobfile {

template <>
std::optional<bool> form(const propertylist::Node& node) {
  return node.boolean();
}

template <>
std::optional<std::int64_t> form(const propertylist::Node& node) {
  return wholeNumber(node, WholeReals::DontCount);
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
