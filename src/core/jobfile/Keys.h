#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "core/base/Boxed.h"
#include "core/jobfile/Codec.h"

/// Records with a fixed set of keys. Each has one table with a row per key, from which both decoding and encoding are
/// generated:
///
///     constexpr auto exampleKeys = std::tuple{
///         Key{CodingKeys::Hour, "Hour", &Example::hour},
///         Key{CodingKeys::Minute, "Minute", &Example::minute},
///     };
///     static_assert(isComplete(exampleKeys, CodingKeys::Minute));
///
/// The type of the field says whether the key is optional: a `std::optional` or `Boxed` is, anything else is required.
namespace mirvel::jobfile {

template <typename CodingKey, typename Record, typename Field>
struct Key {
  constexpr Key(CodingKey codingKey, std::string_view keyText, Field Record::*member)
      : key(codingKey), text(keyText), field(member) {}

  CodingKey key;
  std::string_view text;  ///< as in the file
  Field Record::*field;
};

/// Whether the table has a row for each enumerator up to `last`, in the order of the enumeration. The functions that
/// use an enumerator as an index depend on it.
template <typename CodingKey, typename... Rows>
constexpr bool isComplete(const std::tuple<Rows...>& table, CodingKey last) {
  std::size_t next = 0;
  const bool inOrder =
      std::apply([&](const auto&... row) { return ((static_cast<std::size_t>(row.key) == next++) && ...); }, table);
  return inOrder && next == static_cast<std::size_t>(last) + 1;
}

/// The keys as in the file, in the order of the table.
template <typename... Rows>
constexpr std::array<std::string_view, sizeof...(Rows)> textsOf(const std::tuple<Rows...>& table) {
  return std::apply([](const auto&... row) { return std::array{row.text...}; }, table);
}

/// The enumerator whose text this is, case-sensitively; none if there is none.
template <typename CodingKey, std::size_t count>
std::optional<CodingKey> codingKeyIn(const std::array<std::string_view, count>& texts, std::string_view text) {
  for (std::size_t i = 0; i < count; ++i) {
    if (texts[i] == text) return static_cast<CodingKey>(i);
  }
  return std::nullopt;
}

/// Decodes a field that may be absent. `node` is null if the file doesn't have the key. At a tolerant place, a value
/// that doesn't fit leaves the field absent; elsewhere it fails.
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

/// Decodes a required field: fails with `MissingKey` if `node` is null, even at a tolerant place.
template <typename Field>
void decodeField(const propertylist::Node* node, const Place& place, Field& field) {
  if (!node) failMissing(place);
  decode(*node, place, field);
}

/// Sets the key, unless the field is absent or has no representation.
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

/// Fills the record from a dictionary, in the order of the table, so that the first error doesn't depend on the order
/// in the file. Ignores other keys. Fails if the node isn't a dictionary.
template <typename Record, typename... Rows>
void decodeKeys(const propertylist::Node& node, const Place& place, const std::tuple<Rows...>& table, Record& record) {
  const propertylist::Members members = membersOf(node, place);
  const auto decodeRow = [&](const auto& row) {
    decodeField(members.find(row.text), place.key(row.text), record.*row.field);
  };
  std::apply([&](const auto&... row) { (decodeRow(row), ...); }, table);
}

/// A dictionary with the fields that are present.
template <typename Record, typename... Rows>
propertylist::Dictionary encodeKeys(const Record& record, const std::tuple<Rows...>& table) {
  propertylist::Dictionary dictionary;
  std::apply([&](const auto&... row) { (encodeField(dictionary, row.text, record.*row.field), ...); }, table);
  return dictionary;
}

}  // namespace mirvel::jobfile
