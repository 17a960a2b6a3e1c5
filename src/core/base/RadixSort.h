#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

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

/// Sorts rows by a whole number. Rows with equal numbers keep their order. Pays off for many rows with a small range:
/// the seconds of a month take two passes, however many rows there are. `numberOf` returns the number of a row, at most
/// `greatest`.
template <typename Row, typename NumberOf>
void radixSort(std::vector<Row>& rows, std::uint64_t greatest, NumberOf numberOf) {
  constexpr unsigned digitBits = 11;
  constexpr std::size_t digits = std::size_t{1} << digitBits;
  std::vector<Row> sorted(rows.size());
  for (unsigned shift = 0; shift < 64 && greatest >> shift != 0; shift += digitBits) {
    sortByDigit<digits>(std::span<const Row>(rows), std::span(sorted),
                        [&](const Row& row) { return numberOf(row) >> shift & (digits - 1); });
    rows.swap(sorted);
  }
}

}  // namespace mirvel
