#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "core/base/Boxed.h"
#include "core/jobfile/Codec.h"

/// Records with fixed keys: one table of keys, texts and fields for each, from which both directions come.
namespace mirvel::jobfile {

/// A row of such a table.
template <typename CodingKey, typename Record, typename Field>
struct Key {
  constexpr Key(CodingKey codingKey, std::string_view keyText, Field Record::*member)
      : key(codingKey), text(keyText), field(member) {}

  CodingKey key;
  std::string_view text;
  Field Record::*field;
};

/// Whether the rows stand in the order of the enumeration, from its first case to `last`.
template <typename CodingKey, typename... Rows>
constexpr bool isComplete(const std::tuple<Rows...>& table, CodingKey last) {
  std::size_t next = 0;
  const bool inOrder =
      std::apply([&](const auto&... row) { return ((static_cast<std::size_t>(row.key) == next++) && ...); }, table);
  return inOrder && next == static_cast<std::size_t>(last) + 1;
}

/// The texts of a table, in its order.
template <typename... Rows>
constexpr std::array<std::string_view, sizeof...(Rows)> textsOf(const std::tuple<Rows...>& table) {
  return std::apply([](const auto&... row) { return std::array{row.text...}; }, table);
}

template <typename CodingKey, std::size_t count>
std::optional<CodingKey> codingKeyIn(const std::array<std::string_view, count>& texts, std::string_view text) {
  for (std::size_t i = 0; i < count; ++i) {
    if (texts[i] == text) return static_cast<CodingKey>(i);
  }
  return std::nullopt;
}

/// Reads a field that may be absent; null is absent, and so is what doesn't fit at a tolerant place.
template <typename Optional>
void decodeOptional(const propertylist::Node* node, const Place& place, Optional& field) {
  if (!node) return;
  try {
    decode(*node, place, field.emplace());
  } catch (const DecodingFailure&) {
    if (!place.isTolerant()) throw;
    field.reset();
  }
}
template <typename Field>
void decodeField(const propertylist::Node* node, const Place& place, std::optional<Field>& field) {
  decodeOptional(node, place, field);
}
template <typename Field>
void decodeField(const propertylist::Node* node, const Place& place, Boxed<Field>& field) {
  decodeOptional(node, place, field);
}

/// Reads a field that must be there.
template <typename Field>
void decodeField(const propertylist::Node* node, const Place& place, Field& field) {
  if (!node) failMissing(place);
  decode(*node, place, field);
}

template <typename Field>
void encodeField(propertylist::Dictionary& dictionary, std::string_view key, const std::optional<Field>& field) {
  if (!field) return;
  if (auto value = encode(*field)) dictionary.set(std::string(key), std::move(*value));
}

template <typename Field>
void encodeField(propertylist::Dictionary& dictionary, std::string_view key, const Field& field) {
  if (auto value = encode(field)) dictionary.set(std::string(key), std::move(*value));
}

template <typename Field>
void encodeField(propertylist::Dictionary& dictionary, std::string_view key, const Boxed<Field>& field) {
  if (field) encodeField(dictionary, key, *field);
}

/// Fills the record from a dictionary, in the order of the table. Other keys are no concern of it.
template <typename Record, typename... Rows>
void decodeKeys(const propertylist::Node& node, const Place& place, const std::tuple<Rows...>& table, Record& record) {
  const propertylist::Members members = membersOf(node, place);
  const auto decodeRow = [&](const auto& row) {
    decodeField(members.find(row.text), place.key(row.text), record.*row.field);
  };
  std::apply([&](const auto&... row) { (decodeRow(row), ...); }, table);
}

template <typename Record, typename... Rows>
propertylist::Dictionary encodeKeys(const Record& record, const std::tuple<Rows...>& table) {
  propertylist::Dictionary dictionary;
  std::apply([&](const auto&... row) { (encodeField(dictionary, row.text, record.*row.field), ...); }, table);
  return dictionary;
}

}  // namespace mirvel::jobfile
