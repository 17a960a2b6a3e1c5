#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace mirvel::propertylist {

/// Memory that is handed out piece by piece and freed as a whole, when the arena goes. Pieces don't move.
class Arena {
 public:
  Arena() = default;
  /// Begins with room for so many bytes.
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

  /// Uninitialised room, aligned for any value of up to eight bytes.
  char* room(std::size_t size) {
    size = (size + 7) & ~std::size_t{7};
    if (static_cast<std::size_t>(m_end - m_next) < size) addBlock(size);
    return std::exchange(m_next, m_next + size);
  }

  /// Room for `count` values, still to be filled.
  template <typename T>
  T* row(std::size_t count) {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 8);
    return reinterpret_cast<T*>(room(count * sizeof(T)));
  }

  template <typename T>
  const T* copy(const T* first, std::size_t count) {
    T* const to = row<T>(count);
    if (count != 0) std::memcpy(to, first, count * sizeof(T));
    return to;
  }

  std::string_view copy(std::string_view text) { return {copy(text.data(), text.size()), text.size()}; }

 private:
  struct Block {
    Block* previous;
  };
  static_assert(sizeof(Block) == 8);

  void addBlock(std::size_t atLeast) {
    // Allocators serve up to about a kilobyte quickest; later blocks grow with what there is.
    constexpr std::size_t smallest = 1000;
    const std::size_t size = std::max({smallest, m_total / 2, sizeof(Block) + atLeast});
    auto* const memory = static_cast<char*>(::operator new(size));
    m_total += size;
    m_latest = new (memory) Block{m_latest};
    m_next = memory + sizeof(Block);
    m_end = memory + size;
  }

  Block* m_latest = nullptr;
  char* m_next = nullptr;
  char* m_end = nullptr;
  std::size_t m_total = 0;
};

}  // namespace mirvel::propertylist
