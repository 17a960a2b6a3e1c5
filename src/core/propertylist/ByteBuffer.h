#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace mirvel::plist {

/// Text under construction. Unlike a std::string it lets a writer claim room once for several pieces, and doesn't fill
/// that room with zeros first.
class ByteBuffer {
 public:
  /// Room for `size` more bytes, to be filled from the returned place on and handed in by `advanceTo`.
  char* claim(std::size_t size) {
    if (m_capacity - m_size < size) grow(size);
    return m_bytes.get() + m_size;
  }
  void advanceTo(const char* end) { m_size = static_cast<std::size_t>(end - m_bytes.get()); }

  void append(std::string_view bytes) { advanceTo(put(claim(bytes.size()), bytes)); }
  void append(char byte) { advanceTo(put(claim(1), {&byte, 1})); }

  std::size_t size() const { return m_size; }
  std::string text() const { return {m_bytes.get(), m_size}; }

  /// Copies to claimed room, and gives the place behind it.
  static char* put(char* to, std::string_view bytes) {
    std::memcpy(to, bytes.data(), bytes.size());
    return to + bytes.size();
  }

 private:
  void grow(std::size_t size) {
    const std::size_t capacity = std::max({firstRoom, m_capacity * 2, m_size + size});
    // Not make_unique, which would zero the bytes.
    std::unique_ptr<char[]> bytes(new char[capacity]);
    if (m_size != 0) std::memcpy(bytes.get(), m_bytes.get(), m_size);
    m_bytes = std::move(bytes);
    m_capacity = capacity;
  }

  static constexpr std::size_t firstRoom = 2048;  // most job files fit

  std::unique_ptr<char[]> m_bytes;
  std::size_t m_size = 0;
  std::size_t m_capacity = 0;
};

}  // namespace mirvel::plist
