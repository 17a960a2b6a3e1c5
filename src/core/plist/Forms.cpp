#include "core/plist/Forms.h"

namespace mirvel::launchd {

template <>
std::optional<bool> form(const plist::Node& node) {
  return node.boolean();
}

template <>
std::optional<std::int64_t> form(const plist::Node& node) {
  return wholeNumber(node, WholeReals::DontCount);
}

template <>
std::optional<double> form(const plist::Node& node) {
  return node.real();
}

template <>
std::optional<std::string> form(const plist::Node& node) {
  const auto text = node.string();
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

template <>
std::optional<plist::Data> form(const plist::Node& node) {
  const auto bytes = node.data();
  return bytes ? std::optional(plist::Data{std::string(*bytes)}) : std::nullopt;
}

}  // namespace mirvel::launchd
