#include "core/scan/KeyedRow.h"

#include <algorithm>
#include <array>

namespace mirvel {

namespace {

/// The bytes of the key from `depth` on, with zeros behind its end, as a number that sorts as they do.
std::uint64_t wordOf(std::string_view key, std::size_t depth) {
  std::array<char, sizeof(std::uint64_t)> bytes{};
  if (depth < key.size()) key.copy(bytes.data(), bytes.size(), depth);
  std::uint64_t word = 0;
  for (const char byte : bytes) word = word << 8U | static_cast<unsigned char>(byte);
  return word;
}

template <typename T>
bool stands(const T& a, const T& b, bool isAscending) {
  return isAscending ? a < b : b < a;
}

void sortWhole(std::span<KeyedRow> rows, bool isAscending) {
  std::sort(rows.begin(), rows.end(), [isAscending](const KeyedRow& a, const KeyedRow& b) {
    return a.key != b.key ? stands(a.key, b.key, isAscending) : a.index < b.index;
  });
}

/// Of rows whose keys are the same up to `depth`. Keys often begin alike and lie all over the memory, so they are
/// looked at once for eight bytes each, rather than at every comparison.
void sortFrom(std::size_t depth, std::span<KeyedRow> rows, bool isAscending) {
  constexpr std::size_t deepest = 128;
  if (depth >= deepest) return sortWhole(rows, isAscending);
  for (KeyedRow& row : rows) row.word = wordOf(row.key, depth);
  const auto isLikeFirst = [&](const KeyedRow& row) { return row.word == rows.front().word; };
  if (!std::all_of(rows.begin(), rows.end(), isLikeFirst)) {
    std::sort(rows.begin(), rows.end(), [isAscending](const KeyedRow& a, const KeyedRow& b) {
      return a.word != b.word ? stands(a.word, b.word, isAscending) : a.index < b.index;
    });
  }
  const std::size_t next = depth + sizeof(KeyedRow::word);
  for (auto first = rows.begin(); first != rows.end();) {
    const auto last = std::find_if(first, rows.end(), [&](const KeyedRow& row) { return row.word != first->word; });
    const bool goOn = std::any_of(first, last, [next](const KeyedRow& row) { return row.key.size() > next; });
    if (last - first > 1 && goOn) sortFrom(next, {first, last}, isAscending);
    first = last;
  }
}

}  // namespace

void sortByKey(std::span<KeyedRow> rows, bool isAscending) {
  sortFrom(0, rows, isAscending);
}

Jobs inOrder(const std::vector<KeyedRow>& rows, Jobs&& jobs) {
  Jobs result;
  result.reserve(rows.size());
  for (const KeyedRow& row : rows) result.push_back(std::move(jobs[row.index]));
  return result;
}

}  // namespace mirvel
