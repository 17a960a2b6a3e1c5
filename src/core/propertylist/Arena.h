#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>

namespace mirvel::propertylist {

/// Memory that is allocated in small pieces and freed all at once, when the arena is destroyed. Pieces never move, not
/// even when the arena is moved. Nothing is destroyed individually, so it is for trivial types only. Allocation failure
/// throws `std::bad_alloc`. Not thread-safe.
class Arena {
 public:
  Arena() = default;
  /// Starts with one block of this many bytes, so that as much can be allocated without another one.
  explicit Arena(std::size_t expected) { addBlock(expected); }
  Arena(Arena&& other) noexcept
      : m_latest(std::exchange(other.m_latest, nullptr)),
        m_next(std::exchange(other.m_next, nullptr)),
        m_end(std::exchange(other.m_end, nullptr)),
        m_total(other.m_total) {}
  Arena& operator=(Arena&&) = delete;
  ~Arena() {
    while (m_latest) {
      Block* const block = std::exchange(m_latest, m_latest->previous);
      ::operator delete(block);
    }
  }

  /// Uninitialized memory, aligned to eight bytes. Not null, even for a size of 0, once a block exists.
  char* allocate(std::size_t size) {
    size = (size + 7) & ~std::size_t{7};
    if (static_cast<std::size_t>(m_end - m_next) < size) addBlock(size);
    return std::exchange(m_next, m_next + size);
  }

  /// Uninitialized memory for `count` values.
  template <typename T>
  T* allocateArray(std::size_t count) {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 8);
    return reinterpret_cast<T*>(allocate(count * sizeof(T)));
  }

  /// Copies an array. `first` may be null if `count` is 0.
  template <typename T>
  const T* copy(const T* first, std::size_t count) {
    T* const to = allocateArray<T>(count);
    if (count != 0) std::memcpy(to, first, count * sizeof(T));
    return to;
  }

  /// Copies text, without a null character at its end.
  std::string_view copy(std::string_view text) { return {copy(text.data(), text.size()), text.size()}; }

 private:
  /// The header of a block; its memory follows.
  struct Block {
    Block* previous;
  };
  static_assert(sizeof(Block) == 8);

  void addBlock(std::size_t atLeast) {
    // Allocators are fastest up to about a kilobyte. Later blocks grow with the total, so that there are few of them.
    constexpr std::size_t smallest = 1000;
    const std::size_t size = std::max({smallest, m_total / 2, sizeof(Block) + atLeast});
    auto* const memory = static_cast<char*>(::operator new(size));
    m_total += size;
    m_latest = new (memory) Block{m_latest};
    m_next = memory + sizeof(Block);
    m_end = memory + size;
  }

  Block* m_latest = nullptr;
  char* m_next = nullptr;  // free memory of the latest block
  char* m_end = nullptr;
  std::size_t m_total = 0;  // of all blocks
};

}  // namespace mirvel::propertylist
