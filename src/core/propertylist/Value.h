#pragma once

#include <compare>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

/// Property lists: the values, and (in the headers beside this one) their XML and binary forms.
/// See plist(5) of macOS for the types.
namespace mirvel::propertylist {

class Value;

/// What a value is, in the order of the alternatives of `Value`.
enum class Type : std::uint32_t { Boolean, Integer, Real, String, Data, Date, Array, Dictionary, Uid, Set };

/// A whole number from -2^63 to 2^64-1, the range that both file forms hold.
class Integer {
 public:
  constexpr Integer() = default;
  constexpr Integer(std::int64_t number) : m_bits(static_cast<std::uint64_t>(number)), m_negative(number < 0) {}
  static constexpr Integer fromUnsigned(std::uint64_t number) {
    Integer result;
    result.m_bits = number;
    return result;
  }

  constexpr bool isNegative() const { return m_negative; }
  /// The number, if a signed 64-bit integer can hold it.
  constexpr std::optional<std::int64_t> toInt64() const {
    if (!m_negative && m_bits > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    return static_cast<std::int64_t>(m_bits);
  }
  /// Two's complement of a negative number, the number itself otherwise.
  constexpr std::uint64_t bits() const { return m_bits; }
  /// In decimal digits.
  std::string text() const;

  constexpr bool operator==(const Integer&) const = default;

 private:
  std::uint64_t m_bits = 0;
  bool m_negative = false;
};

/// A moment, as the format counts it.
struct Date {
  double seconds = 0;  ///< since 1 January 2001, 00:00 UTC; finite

  bool operator==(const Date&) const = default;
};

/// Raw bytes.
struct Data {
  std::string bytes;

  bool operator==(const Data&) const = default;
};

/// A keyed archiver's reference. In XML it is the dictionary `{CF$UID: number}`.
struct Uid {
  std::uint32_t number = 0;

  bool operator==(const Uid&) const = default;
};

using Array = std::vector<Value>;

/// An unordered collection; only the binary form has it.
struct Set {
  Array elements;

  bool operator==(const Set& other) const;
};

/// Values under distinct keys, kept sorted by UTF-16 code unit, which is the order of the XML writer.
class Dictionary {
 public:
  struct Entry;
  using const_iterator = std::vector<Entry>::const_iterator;

  // What needs complete entries is defined below them.
  Dictionary();
  Dictionary(const Dictionary&);
  Dictionary(Dictionary&&) noexcept;
  Dictionary& operator=(const Dictionary&);
  Dictionary& operator=(Dictionary&&) noexcept;
  ~Dictionary();
  /// Of repeated keys the last one wins.
  Dictionary(std::initializer_list<std::pair<std::string, Value>> entries);
  /// Takes entries whose keys are distinct, in any order.
  static Dictionary fromDistinct(std::vector<Entry> entries);
  static bool keyLess(std::string_view a, std::string_view b);

  const Value* find(std::string_view key) const;  ///< null: no such key
  Value* find(std::string_view key);
  /// The value under the key; null if there is none, or it is of another type. Nothing is converted.
  template <typename T>
  const T* get(std::string_view key) const;
  template <typename T>
  T* get(std::string_view key);
  void set(std::string_view key, Value value);  ///< adds, or replaces what is there
  bool remove(std::string_view key);            ///< whether it was there

  bool empty() const;
  std::size_t size() const;
  const_iterator begin() const;
  const_iterator end() const;

  bool operator==(const Dictionary& other) const;

 private:
  friend class Value;
  std::vector<Entry> m_entries;
};

/// One property-list value. Reals compare equal when they are the same number, or both not a number.
class Value {
 public:
  Value() = default;  ///< the boolean false
  Value(bool value) : m_value(value) {}
  Value(Integer value) : m_value(value) {}
  Value(int value) : m_value(Integer(value)) {}
  Value(std::int64_t value) : m_value(Integer(value)) {}
  Value(double value) : m_value(value) {}
  Value(std::string value) : m_value(std::move(value)) {}
  Value(std::string_view value) : m_value(std::string(value)) {}
  Value(const char* value) : m_value(std::string(value)) {}
  Value(Data value) : m_value(std::move(value)) {}
  Value(Date value) : m_value(value) {}
  Value(Array value) : m_value(std::move(value)) {}
  Value(Dictionary value) : m_value(std::move(value)) {}
  Value(Uid value) : m_value(value) {}
  Value(Set value) : m_value(std::move(value)) {}

  Type type() const { return static_cast<Type>(m_value.index()); }

  /// The value as a `T` of the list below, or null if it is of another type. Nothing is converted.
  template <typename T>
  const T* as() const {
    return std::get_if<T>(&m_value);
  }
  template <typename T>
  T* as() {
    return std::get_if<T>(&m_value);
  }

  bool operator==(const Value& other) const;

 private:
  std::variant<bool, Integer, double, std::string, Data, Date, Array, Dictionary, Uid, Set> m_value;
};

struct Dictionary::Entry {
  std::string key;
  Value value;

  Entry(std::string_view k, Value v) : key(k), value(std::move(v)) {}
  bool operator==(const Entry&) const = default;
};

inline Dictionary::Dictionary() = default;
inline Dictionary::Dictionary(const Dictionary&) = default;
inline Dictionary::Dictionary(Dictionary&&) noexcept = default;
inline Dictionary& Dictionary::operator=(const Dictionary&) = default;
inline Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
inline Dictionary::~Dictionary() = default;
inline bool Dictionary::empty() const {
  return m_entries.empty();
}
inline std::size_t Dictionary::size() const {
  return m_entries.size();
}
inline Dictionary::const_iterator Dictionary::begin() const {
  return m_entries.begin();
}
inline Dictionary::const_iterator Dictionary::end() const {
  return m_entries.end();
}

template <typename T>
const T* Dictionary::get(std::string_view key) const {
  const Value* const value = find(key);
  return value ? value->as<T>() : nullptr;
}
template <typename T>
T* Dictionary::get(std::string_view key) {
  Value* const value = find(key);
  return value ? value->as<T>() : nullptr;
}

/// What a person calls the type, with its article: "a string", "an integer", "a dictionary".
std::string_view typeName(Type type);

}  // namespace mirvel::propertylist
