#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Codec.h"

/// Values of several forms that never fail: each form that the value hasn't got stays absent.
namespace mirvel::jobfile {

/// The value as exactly that type. An integer isn't a real here, nor the other way round, so that nothing changes its
/// type by being saved.
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

/// The elements of an array that holds nothing else than that type; an empty one fits any type.
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

/// Puts the value into the bucket of that type under its key, if it is of it.
template <typename Form>
bool storeForm(const propertylist::Member& member, StringMap<Form>& bucket) {
  auto found = form<Form>(member.value);
  if (found) bucket.insert_or_assign(std::string(member.key()), std::move(*found));
  return found.has_value();
}

/// The first form that is present, or nothing.
template <typename... Forms>
std::optional<propertylist::Value> encodeFirst(const std::optional<Forms>&... forms) {
  std::optional<propertylist::Value> result;
  (void)((forms && (result = encode(*forms), true)) || ...);
  return result;
}

}  // namespace mirvel::jobfile
