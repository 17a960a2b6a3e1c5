#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Eight bytes of text processed at once, as a 64-bit word in the byte order of the machine. The first byte in memory
/// is the lowest byte of the word only on a little-endian machine; callers that care check `std::endian`.
namespace mirvel::propertylist::words {

constexpr std::size_t size = 8;  ///< of a word, in bytes

/// Reads a word at any address, aligned or not. All eight bytes must be readable.
inline std::uint64_t load(const char* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, size);
  return word;
}

/// The first eight bytes of a text, followed by zeros if it is shorter.
constexpr std::uint64_t of(std::string_view text) {
  std::array<char, size> bytes{};
  for (std::size_t i = 0; i < size && i < text.size(); ++i) bytes[i] = text[i];
  return std::bit_cast<std::uint64_t>(bytes);
}

namespace detail {
constexpr std::array<std::uint64_t, size + 1> makeMasks() {
  std::array<std::uint64_t, size + 1> masks{};
  for (std::size_t count = 0; count <= size; ++count) {
    std::array<char, size> bytes{};
    for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(0xFF);
    masks[count] = std::bit_cast<std::uint64_t>(bytes);
  }
  return masks;
}
inline constexpr auto masks = makeMasks();
}  // namespace detail

/// A word in which all bits of the first `count` bytes in memory are set; `count` is 0 to 8.
constexpr std::uint64_t mask(std::size_t count) {
  return detail::masks[count];
}

/// The highest bit of each byte, which ASCII text doesn't have.
constexpr std::uint64_t highBits = 0x8080808080808080U;

/// Nonzero if a byte of the word equals `c`. The lowest bit that is set is the high bit of the lowest such byte; higher
/// bits may be false positives, since borrows carry into the next byte.
constexpr std::uint64_t find(std::uint64_t word, char c) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  const std::uint64_t zeroWhereFound = word ^ (ones * static_cast<unsigned char>(c));
  return (zeroWhereFound - ones) & ~zeroWhereFound & highBits;
}

}  // namespace mirvel::propertylist::words
