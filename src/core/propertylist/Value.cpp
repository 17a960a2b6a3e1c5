#include "core/propertylist/Value.h"

#include <algorithm>
#include <cmath>

#include "core/propertylist/RealText.h"

namespace mirvel::plist {

namespace {

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

Dictionary Dictionary::fromSorted(std::vector<Entry> entries) {
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

std::string summary(const Value& value) {
  constexpr std::size_t longest = 40;
  if (const auto* boolean = value.as<bool>()) return *boolean ? "true" : "false";
  if (const auto* integer = value.as<Integer>()) return integer->text();
  if (const auto* real = value.as<double>()) return realText(*real);
  if (const auto* array = value.as<Array>()) return "an array of " + std::to_string(array->size());
  if (const auto* dictionary = value.as<Dictionary>()) return "a dictionary of " + std::to_string(dictionary->size());
  if (const auto* string = value.as<std::string>()) {
    if (string->size() <= longest) return '"' + *string + '"';
    std::size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>((*string)[end]) & 0xC0U) == 0x80U) --end;
    return '"' + string->substr(0, end) + "...\"";
  }
  return std::string(typeName(value.type()));
}

}  // namespace mirvel::plist
