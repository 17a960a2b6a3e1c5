#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

/// A job's place in a list, for sorting by a collator's key.
struct KeyedRow {
  /// The key outlives the row.
  KeyedRow(std::string_view theKey, std::size_t theIndex) : key(theKey), index(theIndex) {}

  std::string_view key;
  std::size_t index;
  std::uint64_t word = 0;  ///< the eight bytes of the key that were compared last; the same in sorted rows of one key

  bool hasKeyOf(const KeyedRow& other) const { return word == other.word && key == other.key; }
};

/// Sorts by the keys, byte by byte. The rows come in the order of their indexes, and rows with one key stay in it,
/// either way.
void sortByKey(std::span<KeyedRow> rows, bool isAscending);

/// The jobs in the order of the rows, each of which has one.
Jobs inOrder(const std::vector<KeyedRow>& rows, Jobs&& jobs);

}  // namespace mirvel
