#include "core/propertylist/Value.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace mirvel::propertylist {

namespace {

/// Bytes of UTF-8 text, ranked so that comparing them compares UTF-16 code units: characters beyond the basic plane
/// (lead byte F0 and up) are surrogates there, and come before U+E000 to U+FFFF (lead bytes EE and EF).
constexpr unsigned utf16Rank(std::uint8_t byte) {
  if (byte < 0xEE) return byte;
  return byte >= 0xF0 ? byte - 2U : byte + 16U;
}

bool sameReal(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

std::string Integer::text() const {
  return m_negative ? std::to_string(static_cast<std::int64_t>(m_bits)) : std::to_string(m_bits);
}

bool Set::operator==(const Set& other) const {
  return std::is_permutation(elements.begin(), elements.end(), other.elements.begin(), other.elements.end());
}

bool Dictionary::keyLess(std::string_view a, std::string_view b) {
  const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (right == b.end()) return false;
  if (left == a.end()) return true;
  return utf16Rank(static_cast<std::uint8_t>(*left)) < utf16Rank(static_cast<std::uint8_t>(*right));
}

Dictionary::Dictionary(std::initializer_list<std::pair<std::string, Value>> entries) {
  for (const auto& [key, value] : entries) set(key, value);
}

Dictionary Dictionary::fromDistinct(std::vector<Entry> entries) {
  const auto before = [](const Entry& a, const Entry& b) { return keyLess(a.key, b.key); };
  if (!std::is_sorted(entries.begin(), entries.end(), before)) std::sort(entries.begin(), entries.end(), before);
  Dictionary result;
  result.m_entries = std::move(entries);
  return result;
}

namespace {

template <typename Entries>
auto position(Entries& entries, std::string_view key) {
  return std::lower_bound(entries.begin(), entries.end(), key, [](const Dictionary::Entry& entry, std::string_view k) {
    return Dictionary::keyLess(entry.key, k);
  });
}

}  // namespace

const Value* Dictionary::find(std::string_view key) const {
  const auto at = position(m_entries, key);
  return at != m_entries.end() && at->key == key ? &at->value : nullptr;
}

Value* Dictionary::find(std::string_view key) {
  const auto at = position(m_entries, key);
  return at != m_entries.end() && at->key == key ? &at->value : nullptr;
}

void Dictionary::set(std::string_view key, Value value) {
  const auto at = position(m_entries, key);
  if (at != m_entries.end() && at->key == key) {
    at->value = std::move(value);
  } else {
    m_entries.insert(at, Entry(key, std::move(value)));
  }
}

bool Dictionary::remove(std::string_view key) {
  const auto at = position(m_entries, key);
  if (at == m_entries.end() || at->key != key) return false;
  m_entries.erase(at);
  return true;
}

bool Dictionary::operator==(const Dictionary& other) const {
  return m_entries == other.m_entries;
}

bool Value::operator==(const Value& other) const {
  if (const double* real = as<double>()) {
    const double* otherReal = other.as<double>();
    return otherReal && sameReal(*real, *otherReal);
  }
  return m_value == other.m_value;
}

std::string_view typeName(Type type) {
  switch (type) {
    case Type::Boolean:
      return "a boolean";
    case Type::Integer:
      return "an integer";
    case Type::Real:
      return "a real";
    case Type::String:
      return "a string";
    case Type::Data:
      return "data";
    case Type::Date:
      return "a date";
    case Type::Array:
      return "an array";
    case Type::Dictionary:
      return "a dictionary";
    case Type::Uid:
      return "a UID";
    case Type::Set:
      return "a set";
  }
  return "";
}

}  // namespace mirvel::propertylist
