#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Eight bytes of text at once, as a number of the machine's own byte order.
namespace mirvel::propertylist::words {

constexpr std::size_t size = 8;

inline std::uint64_t load(const char* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, size);
  return word;
}

/// The first bytes of a text, with zeros behind a shorter one.
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

/// All bits of the first `count` bytes, 0 to 8.
constexpr std::uint64_t mask(std::size_t count) {
  return detail::masks[count];
}

constexpr std::uint64_t tops = 0x8080808080808080U;

/// Not zero if a byte of the word is `c`. The lowest bit set is the top one of the lowest such byte; above it there may
/// be others that mean nothing.
constexpr std::uint64_t find(std::uint64_t word, char c) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  const std::uint64_t zeroWhereFound = word ^ (ones * static_cast<unsigned char>(c));
  return (zeroWhereFound - ones) & ~zeroWhereFound & tops;
}

}  // namespace mirvel::propertylist::words
