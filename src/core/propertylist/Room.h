#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>

namespace mirvel::propertylist {

/// A row of plain values that grows and shrinks at its end. The first `N` cost no allocation, and unlike in a vector
/// room can be claimed before it is filled.
template <typename T, std::size_t N>
class Room {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_default_constructible_v<T>);

 public:
  Room() {}  // not defaulted, which would have callers fill the first room with zeros
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;

  bool empty() const { return m_next == m_begin; }
  std::size_t size() const { return static_cast<std::size_t>(m_next - m_begin); }
  const T* begin() const { return m_begin; }
  const T* end() const { return m_next; }
  T& operator[](std::size_t index) { return m_begin[index]; }
  const T& operator[](std::size_t index) const { return m_begin[index]; }
  T& back() { return m_next[-1]; }
  const T& back() const { return m_next[-1]; }

  // By value, so that small ones are stored from their registers.
  void push(T value) { *claim(1) = value, ++m_next; }
  /// The last one, which stays readable until the next push.
  const T& pop() { return *--m_next; }
  void shrinkTo(std::size_t size) { m_next = m_begin + size; }

  /// Room for `count` more, to be filled from the returned place on and taken by `advanceTo`.
  T* claim(std::size_t count) {
    if (static_cast<std::size_t>(m_last - m_next) < count) grow(count);
    return m_next;
  }
  void advanceTo(T* end) { m_next = end; }

 private:
  void grow(std::size_t atLeast) {
    const std::size_t used = size();
    const std::size_t capacity = std::max(2 * static_cast<std::size_t>(m_last - m_begin), used + atLeast);
    std::unique_ptr<T[]> values(new T[capacity]);  // not make_unique, which would zero them
    std::memcpy(values.get(), m_begin, used * sizeof(T));
    m_heap = std::move(values);
    m_begin = m_heap.get();
    m_next = m_begin + used;
    m_last = m_begin + capacity;
  }

  std::array<T, N> m_first;
  std::unique_ptr<T[]> m_heap;
  T* m_begin = m_first.data();
  T* m_next = m_begin;
  T* m_last = m_begin + N;
};

}  // namespace mirvel::propertylist
