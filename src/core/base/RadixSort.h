#pragma once

#include <array>
#include <cstddef>
#include <span>

namespace mirvel {

/// One pass of a radix sort: copies the rows to `sorted`, which has the same size, in the order of their digits. Rows
/// with equal digits keep their order. `digitOf` returns the digit of a row, less than `digits`.
template <std::size_t digits, typename Row, typename DigitOf>
void sortByDigit(std::span<const Row> rows, std::span<Row> sorted, DigitOf digitOf) {
  std::array<std::size_t, digits> places{};
  for (const Row& row : rows) ++places[digitOf(row)];
  std::size_t place = 0;
  for (std::size_t& digit : places) {
    const std::size_t count = digit;
    digit = place;
    place += count;
  }
  for (const Row& row : rows) sorted[places[digitOf(row)]++] = row;
}

}  // namespace mirvel
