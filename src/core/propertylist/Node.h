#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/propertylist/Value.h"

namespace mirvel::propertylist {

class Dictionary;
struct Member;

/// The entries of a dictionary that was read, in the order of the file. Keys are distinct: duplicates are dropped when
/// reading. A view, valid as long as the `Document`.
///
///     for (const Member& member : members) print(member.key(), member.value);
class Members {
 public:
  Members(const Member* first, std::size_t count) : m_first(first), m_count(count) {}

  const Member* begin() const;
  const Member* end() const;
  /// The number of entries.
  std::size_t size() const { return m_count; }
  /// The value of a key; null if there is no such key. A linear search: to look up many keys, iterate once instead.
  const class Node* find(std::string_view key) const;

 private:
  const Member* m_first;
  std::size_t m_count;
};

/// A value of a list that was read: an immutable view of sixteen bytes, cheap to copy. It refers to the memory of its
/// `Document` and must not be used after it; `valueOf` makes a copy that is independent. Reading allocates nothing for
/// a single value, and strings refer to the bytes of the file where that is possible.
///
///     const auto document = read("<dict><key>Nice</key><integer>5</integer></dict>");
///     const auto members = document->root().dictionary();  // optional<Members>
///     const Node* nice = members->find("Nice");
///     nice->integer();  // Integer(5)
///     nice->string();   // nullopt: it isn't a string
class Node {
 public:
  /// Value-initialized (`Node{}`) it is the boolean false; default-initialized it is indeterminate.
  Node() = default;

  // Made by the readers. Text, data and elements aren't copied: they must outlive the node.

  static Node boolean(bool value) { return {Type::Boolean, value ? 1U : 0U, 0}; }
  static Node integer(Integer value) { return {Type::Integer, value.bits(), value.isNegative() ? 1U : 0U}; }
  static Node real(double value) { return {Type::Real, std::bit_cast<std::uint64_t>(value), 0}; }
  static Node date(Date value) { return {Type::Date, std::bit_cast<std::uint64_t>(value.seconds), 0}; }
  static Node uid(Uid value) { return {Type::Uid, value.number, 0}; }
  static Node string(std::string_view text) { return {Type::String, text.data(), text.size()}; }
  static Node data(std::string_view bytes) { return {Type::Data, bytes.data(), bytes.size()}; }
  static Node array(std::span<const Node> elements) { return {Type::Array, elements.data(), elements.size()}; }
  /// Element order is that of the file, as in `array`.
  static Node set(std::span<const Node> elements) { return {Type::Set, elements.data(), elements.size()}; }
  /// From `2 * count` nodes: key, value, key, value.
  static Node dictionary(const Node* entries, std::size_t count) { return {Type::Dictionary, entries, count}; }

  /// Exactly one of the accessors below returns a value: that of this type.
  Type type() const { return m_type; }
  /// Whether two strings are equal. Both nodes must be strings.
  bool isSameText(const Node& other) const {
    return m_size == other.m_size && std::memcmp(pointer<char>(), other.pointer<char>(), m_size) == 0;
  }
  /// The size of a string or of data in bytes; 0 for all other types.
  std::size_t byteCount() const { return m_type == Type::String || m_type == Type::Data ? m_size : 0; }

  // The content of a value of that type, and nullopt for any other type. Nothing is converted. Strings are valid UTF-8
  // and may contain any character, including null.
  std::optional<bool> boolean() const { return when(Type::Boolean, m_bits != 0); }
  std::optional<Integer> integer() const {
    const Integer number = m_size != 0 ? Integer(static_cast<std::int64_t>(m_bits)) : Integer::fromUnsigned(m_bits);
    return when(Type::Integer, number);
  }
  std::optional<double> real() const { return when(Type::Real, std::bit_cast<double>(m_bits)); }
  std::optional<std::string_view> string() const { return when(Type::String, bytes()); }
  std::optional<std::string_view> data() const { return when(Type::Data, bytes()); }
  std::optional<Date> date() const { return when(Type::Date, Date{std::bit_cast<double>(m_bits)}); }
  std::optional<std::span<const Node>> array() const { return when(Type::Array, elements()); }
  std::optional<std::span<const Node>> set() const { return when(Type::Set, elements()); }
  std::optional<Uid> uid() const { return when(Type::Uid, Uid{static_cast<std::uint32_t>(m_bits)}); }
  std::optional<Members> dictionary() const;

 private:
  Node(Type type, std::uint64_t bits, std::size_t size)
      : m_bits(bits), m_size(static_cast<std::uint32_t>(size)), m_type(type) {}
  Node(Type type, const void* content, std::size_t size)
      : Node(type, reinterpret_cast<std::uintptr_t>(content), size) {}

  template <typename T>
  std::optional<T> when(Type type, T value) const {
    return m_type == type ? std::optional<T>(value) : std::nullopt;
  }
  template <typename T>
  const T* pointer() const {
    return reinterpret_cast<const T*>(static_cast<std::uintptr_t>(m_bits));  // NOLINT(performance-no-int-to-ptr)
  }
  std::string_view bytes() const { return {pointer<char>(), m_size}; }
  std::span<const Node> elements() const { return {pointer<Node>(), m_size}; }

  std::uint64_t m_bits;  // the number, the bits of the real, or the address of the content
  std::uint32_t m_size;  // in bytes, elements or entries; of an integer: 1 if it is negative
  Type m_type;
  // There is no padding, so that a copy is two whole registers. A padded node is copied in pieces that overlap the
  // stores just made, for which the processor waits: that was a third of the time for reading binary lists.
};
static_assert(sizeof(Node) == 16 && sizeof(Type) == 4);

/// An entry of a dictionary.
struct Member {
  Node keyNode;  ///< a string
  Node value;

  std::string_view key() const { return *keyNode.string(); }
};

inline const Member* Members::begin() const {
  return m_first;
}
inline const Member* Members::end() const {
  return m_first + m_count;
}
inline const Node* Members::find(std::string_view key) const {
  for (const Member& member : *this) {
    if (member.key() == key) return &member.value;
  }
  return nullptr;
}
static_assert(sizeof(Member) == 2 * sizeof(Node));

inline std::optional<Members> Node::dictionary() const {
  if (m_type != Type::Dictionary) return std::nullopt;
  return Members(pointer<Member>(), m_size);
}

/// A deep copy. Recurses as deep as the list is nested, which `Limits::depth` bounds.
Value valueOf(const Node& node);

/// A short description for messages: `"text"`, `42`, `true`, `an array of 3`, `a date`. Strings are cut after 40 bytes,
/// between characters. Not translated.
std::string summary(const Node& node);

}  // namespace mirvel::propertylist
