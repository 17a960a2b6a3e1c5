#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>

namespace mirvel::propertylist {

/// A vector of trivial values that grows and shrinks at its end. The first `N` are stored in the object itself, without
/// an allocation; unlike with `std::vector`, memory can be reserved at the end and written before the size is adjusted.
/// Growing invalidates pointers and references. Indices and sizes aren't checked.
template <typename T, std::size_t N>
class SmallVector {
  static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_default_constructible_v<T>);

 public:
  SmallVector() {}  // not defaulted: value-initialization would then fill `m_first` with zeros
  SmallVector(const SmallVector&) = delete;
  SmallVector& operator=(const SmallVector&) = delete;

  // As in std::vector.
  bool empty() const { return m_next == m_begin; }
  std::size_t size() const { return static_cast<std::size_t>(m_next - m_begin); }
  const T* begin() const { return m_begin; }
  const T* end() const { return m_next; }
  T& operator[](std::size_t index) { return m_begin[index]; }
  const T& operator[](std::size_t index) const { return m_begin[index]; }
  T& back() { return m_next[-1]; }
  const T& back() const { return m_next[-1]; }

  // By value, so that small values are stored directly from registers.
  void push(T value) { *reserve(1) = value, ++m_next; }
  /// Removes the last value. The returned reference stays valid until the next `push` or `reserve`.
  const T& pop() { return *--m_next; }
  /// Removes all values from index `size` on. Likewise, they can be read until the next `push` or `reserve`.
  void shrinkTo(std::size_t size) { m_next = m_begin + size; }

  /// Uninitialized memory for `count` more values, which become part of the vector with `extendTo`.
  T* reserve(std::size_t count) {
    if (static_cast<std::size_t>(m_last - m_next) < count) grow(count);
    return m_next;
  }
  /// The values up to `end`, within the memory that was reserved, become part of the vector.
  void extendTo(T* end) { m_next = end; }

 private:
  /// Doubles the capacity, or more if `atLeast` more values need it.
  void grow(std::size_t atLeast) {
    const std::size_t used = size();
    const std::size_t capacity = std::max(2 * static_cast<std::size_t>(m_last - m_begin), used + atLeast);
    std::unique_ptr<T[]> values(new T[capacity]);  // not make_unique, which would fill it with zeros
    std::memcpy(values.get(), m_begin, used * sizeof(T));
    m_heap = std::move(values);
    m_begin = m_heap.get();
    m_next = m_begin + used;
    m_last = m_begin + capacity;
  }

  std::array<T, N> m_first;
  std::unique_ptr<T[]> m_heap;  // null as long as `m_first` is used
  T* m_begin = m_first.data();
  T* m_next = m_begin;
  T* m_last = m_begin + N;  // the end of the capacity
};

}  // namespace mirvel::propertylist
