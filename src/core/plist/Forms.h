#pragma once

#include <optional>
#include <vector>

#include "core/plist/Codec.h"

/// Values of several forms that never fail: each form that the value hasn't got stays absent.
namespace mirvel::launchd {

/// The value as exactly that type. An integer isn't a real here, nor the other way round, so that nothing changes its
/// type by being saved.
template <typename Form>
std::optional<Form> form(const plist::Value& value) {
  const auto* found = value.as<Form>();
  return found ? std::optional<Form>(*found) : std::nullopt;
}

template <>
inline std::optional<std::int64_t> form<std::int64_t>(const plist::Value& value) {
  return wholeNumber(value, WholeReals::DontCount);
}

/// The elements of an array that holds nothing else than that type; an empty one fits any type.
template <typename Form>
std::optional<std::vector<Form>> arrayForm(const plist::Value& value) {
  const auto* array = value.as<plist::Array>();
  if (!array) return std::nullopt;
  std::vector<Form> elements;
  elements.reserve(array->size());
  for (const plist::Value& element : *array) {
    auto found = form<Form>(element);
    if (!found) return std::nullopt;
    elements.push_back(std::move(*found));
  }
  return elements;
}

/// Puts the value into the bucket of that type, if it is of it.
template <typename Form>
bool storeForm(const plist::Value& value, StringMap<Form>& bucket, const std::string& key) {
  auto found = form<Form>(value);
  if (found) bucket.insert_or_assign(key, std::move(*found));
  return found.has_value();
}

/// The first form that is present, or nothing.
template <typename... Forms>
std::optional<plist::Value> encodeFirst(const std::optional<Forms>&... forms) {
  std::optional<plist::Value> result;
  (void)((forms && (result = encode(*forms), true)) || ...);
  return result;
}

}  // namespace mirvel::launchd
