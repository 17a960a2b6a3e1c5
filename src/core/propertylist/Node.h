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

/// The entries of a dictionary as they were read: in the order of the file, the keys distinct.
class Members {
 public:
  Members(const Member* first, std::size_t count) : m_first(first), m_count(count) {}

  const Member* begin() const;
  const Member* end() const;
  std::size_t size() const { return m_count; }
  /// Goes through the entries; null: no such key.
  const class Node* find(std::string_view key) const;

 private:
  const Member* m_first;
  std::size_t m_count;
};

/// A value of a list that was read. It can't be changed, is cheap to copy, and lives as long as its `Document`: reading
/// costs no allocation for a value, and texts lie where the file's bytes do. `Value` is the form for everything else.
class Node {
 public:
  Node() = default;  ///< `Node{}` is the boolean false

  static Node boolean(bool value) { return {Type::Boolean, value ? 1U : 0U, 0}; }
  static Node integer(Integer value) { return {Type::Integer, value.bits(), value.isNegative() ? 1U : 0U}; }
  static Node real(double value) { return {Type::Real, std::bit_cast<std::uint64_t>(value), 0}; }
  static Node date(Date value) { return {Type::Date, std::bit_cast<std::uint64_t>(value.seconds), 0}; }
  static Node uid(Uid value) { return {Type::Uid, value.number, 0}; }
  static Node string(std::string_view text) { return {Type::String, text.data(), text.size()}; }
  static Node data(std::string_view bytes) { return {Type::Data, bytes.data(), bytes.size()}; }
  static Node array(std::span<const Node> elements) { return {Type::Array, elements.data(), elements.size()}; }
  static Node set(std::span<const Node> elements) { return {Type::Set, elements.data(), elements.size()}; }
  /// `count` entries that lie as key, value, key, value.
  static Node dictionary(const Node* entries, std::size_t count) { return {Type::Dictionary, entries, count}; }

  Type type() const { return m_type; }
  /// Of two strings: are they equal?
  bool isSameText(const Node& other) const {
    return m_size == other.m_size && std::memcmp(place<char>(), other.place<char>(), m_size) == 0;
  }
  /// How much text or data it holds itself.
  std::size_t byteCount() const { return m_type == Type::String || m_type == Type::Data ? m_size : 0; }

  // What the value holds, if it is of the type. Nothing is converted.
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
  Node(Type type, const void* place, std::size_t size) : Node(type, reinterpret_cast<std::uintptr_t>(place), size) {}

  template <typename T>
  std::optional<T> when(Type type, T value) const {
    return m_type == type ? std::optional<T>(value) : std::nullopt;
  }
  template <typename T>
  const T* place() const {
    return reinterpret_cast<const T*>(static_cast<std::uintptr_t>(m_bits));  // NOLINT(performance-no-int-to-ptr)
  }
  std::string_view bytes() const { return {place<char>(), m_size}; }
  std::span<const Node> elements() const { return {place<Node>(), m_size}; }

  std::uint64_t m_bits;  // the number, the bits of the real, or the address of what lies in the arena
  std::uint32_t m_size;  // bytes or elements; of an integer: whether it is negative
  Type m_type;
  // There is no padding: a copy is two whole registers, and never a read of bytes that are still being stored.
};
static_assert(sizeof(Node) == 16 && sizeof(Type) == 4);

/// A key and its value.
struct Member {
  Node keyNode;  ///< always a string
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
  return Members(place<Member>(), m_size);
}

/// A copy that stands on its own.
Value valueOf(const Node& node);

/// A short rendering for messages: `"text"`, `42`, `true`, `an array of 3`. Long texts are cut.
std::string summary(const Node& node);

}  // namespace mirvel::propertylist
