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

/// Property lists: the types of plist(5), their XML and binary forms, and the old text form.
///
/// - `Value` (this header) owns its contents and can be changed. It is what is written.
/// - `Node` (Node.h) is the result of reading: a cheap read-only view into a `Document`.
/// - `read` (Reader.h) parses either file form; `writeXml` and `writeBinary` (Writer.h) produce them.
///
///     auto document = propertylist::read(bytes);        // Result<Document>
///     if (!document) return document.error();
///     Value value = document->value();                  // deep copy, independent of the document
///     value.as<Dictionary>()->set("RunAtLoad", true);
///     auto xml = propertylist::writeXml(value);         // Result<std::string>
///
/// Nothing here has global state. An object may be read by several threads at once as long as none changes it.
namespace mirvel::propertylist {

class Value;

/// The type of a value. The order is that of the alternatives in `Value`.
enum class Type : std::uint32_t { Boolean, Integer, Real, String, Data, Date, Array, Dictionary, Uid, Set };

/// An integer from -2^63 to 2^64-1: the union of what signed and unsigned 64-bit numbers hold, as in both file forms.
/// Equal numbers compare equal whichever way they were made.
class Integer {
 public:
  constexpr Integer() = default;
  /// Implicit. Numbers above 2^63-1 need `fromUnsigned`.
  constexpr Integer(std::int64_t number) : m_bits(static_cast<std::uint64_t>(number)), m_negative(number < 0) {}
  static constexpr Integer fromUnsigned(std::uint64_t number) {
    Integer result;
    result.m_bits = number;
    return result;
  }

  constexpr bool isNegative() const { return m_negative; }
  /// The number; nullopt above 2^63-1.
  constexpr std::optional<std::int64_t> toInt64() const {
    if (!m_negative && m_bits > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    return static_cast<std::int64_t>(m_bits);
  }
  /// The number itself, or the two's complement of a negative one.
  constexpr std::uint64_t bits() const { return m_bits; }
  /// Decimal digits, with a minus sign if negative: `18446744073709551615`.
  std::string text() const;

  constexpr bool operator==(const Integer&) const = default;

 private:
  std::uint64_t m_bits = 0;
  bool m_negative = false;
};

/// A point in time. XML stores whole seconds, so `writeXml` rounds down; the binary form keeps fractions.
struct Date {
  double seconds = 0;  ///< since 1 January 2001, 00:00 UTC; finite, see `isReadable` for the range that can be read

  bool operator==(const Date&) const = default;
};

/// Raw bytes, of any content.
struct Data {
  std::string bytes;

  bool operator==(const Data&) const = default;
};

/// An object reference of a keyed archive. XML represents it as the dictionary `{CF$UID: number}`, and every dictionary
/// of that shape is read as a `Uid`.
struct Uid {
  std::uint32_t number = 0;

  bool operator==(const Uid&) const = default;
};

using Array = std::vector<Value>;

/// An unordered collection, which only the binary form supports.
struct Set {
  Array elements;  ///< in the order of the file; duplicates aren't removed

  /// Ignores the order. Takes quadratic time.
  bool operator==(const Set& other) const;
};

/// A map from distinct keys to values, sorted by UTF-16 code unit, which is the order in which macOS writes keys.
/// Lookup is a binary search; adding and removing move the entries after the key. Pointers and iterators are
/// invalidated by `set`, `remove` and assignment.
///
///     Dictionary job{{"Label", "local.backup"}, {"StartInterval", 300}};
///     job.get<std::string>("Label");    // pointer to "local.backup"
///     job.get<std::string>("Program");  // null: no such key
///     job.get<bool>("StartInterval");   // null: another type
class Dictionary {
 public:
  struct Entry;
  using const_iterator = std::vector<Entry>::const_iterator;

  // Defined below, where `Entry` is complete.
  Dictionary();
  Dictionary(const Dictionary&);
  Dictionary(Dictionary&&) noexcept;
  Dictionary& operator=(const Dictionary&);
  Dictionary& operator=(Dictionary&&) noexcept;
  ~Dictionary();
  /// If a key is repeated, its last value wins.
  Dictionary(std::initializer_list<std::pair<std::string, Value>> entries);
  /// Faster than repeated `set`. The entries may be in any order; their keys must be distinct, which isn't checked.
  static Dictionary fromDistinct(std::vector<Entry> entries);
  /// Whether `a` comes before `b` in UTF-16 code unit order. A strict weak ordering even of ill-formed UTF-8.
  static bool keyLess(std::string_view a, std::string_view b);

  /// The value of a key, of whatever type; null if there is no such key.
  const Value* find(std::string_view key) const;
  Value* find(std::string_view key);
  /// The value of a key as a `T`, one of the alternatives of `Value`; null if there is no such key or its value has
  /// another type. Nothing is converted.
  template <typename T>
  const T* get(std::string_view key) const;
  template <typename T>
  T* get(std::string_view key);
  /// Adds the key or replaces its value.
  void set(std::string_view key, Value value);
  /// Returns whether the key existed.
  bool remove(std::string_view key);

  bool empty() const;
  std::size_t size() const;
  const_iterator begin() const;
  const_iterator end() const;

  bool operator==(const Dictionary& other) const;

 private:
  friend class Value;
  std::vector<Entry> m_entries;
};

/// A property-list value of any type. Copying is deep. Strings should be valid UTF-8 and may contain any character,
/// including null: the readers guarantee it, but nothing else checks it (see Writer.h for what happens to other text).
///
/// Values of different types are never equal, not even 1 and 1.0. NaN equals NaN, so that a list equals its own copy.
class Value {
 public:
  /// False, of type boolean.
  Value() = default;
  // Implicit, so that literals can be used as values.
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

  /// The value as a `T`, one of the alternatives below (`std::string` and not `std::string_view`, `Integer` and not
  /// `int`); null if it has another type. Nothing is converted. Valid until the value is assigned to or destroyed.
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

/// The type for messages, with its article: "a string", "an integer", "data". Not translated.
std::string_view typeName(Type type);

}  // namespace mirvel::propertylist
