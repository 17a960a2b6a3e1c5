#include "core/scan/SortByKey.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/base/RadixSort.h"

namespace mirvel {

namespace {

/// Eight bytes of the key from `depth` on, padded with zeros, as a big-endian number, which sorts like the bytes.
std::uint64_t wordOf(std::string_view key, std::size_t depth) {
  std::array<char, sizeof(std::uint64_t)> bytes{};
  if (depth < key.size()) key.copy(bytes.data(), bytes.size(), depth);
  std::uint64_t word = 0;
  for (const char byte : bytes) word = word << 8U | static_cast<unsigned char>(byte);
  return word;
}

template <typename T>
bool isInOrder(const T& a, const T& b, bool isAscending) {
  return isAscending ? a < b : b < a;
}

void sortWhole(std::span<KeyedRow> rows, bool isAscending) {
  std::sort(rows.begin(), rows.end(), [isAscending](const KeyedRow& a, const KeyedRow& b) {
    return a.key != b.key ? isInOrder(a.key, b.key, isAscending) : a.index < b.index;
  });
}

/// Sorts by the words. Many rows are sorted byte by byte, which doesn't depend on guessed branches as comparisons do.
/// `scratch` has as many rows.
void sortByWord(std::span<KeyedRow> rows, std::span<KeyedRow> scratch) {
  constexpr std::size_t few = 128;
  if (rows.size() <= few) {
    std::sort(rows.begin(), rows.end(), [](const KeyedRow& a, const KeyedRow& b) {
      return a.word != b.word ? a.word < b.word : a.index < b.index;
    });
    return;
  }
  std::uint64_t differences = 0;
  for (const KeyedRow& row : rows) differences |= row.word ^ rows.front().word;
  constexpr unsigned byteBits = 8;
  constexpr std::uint64_t mask = 0xFF;
  for (unsigned shift = 0; shift < 64; shift += byteBits) {
    if ((differences >> shift & mask) == 0) continue;
    sortByDigit<mask + 1>(std::span<const KeyedRow>(rows), scratch,
                          [shift](const KeyedRow& row) { return row.word >> shift & mask; });
    std::copy(scratch.begin(), scratch.end(), rows.begin());
  }
}

/// Sorts rows whose keys have the first `depth` bytes in common: by the next eight bytes, and then, recursively, each
/// group of rows in which these are equal. Every key is read once per level, not once per comparison.
void sortFrom(std::size_t depth, std::span<KeyedRow> rows, std::span<KeyedRow> scratch, bool isAscending) {
  constexpr std::size_t deepest = 128;  // bounds the recursion for texts that share a very long prefix
  if (depth >= deepest) return sortWhole(rows, isAscending);
  for (KeyedRow& row : rows) row.word = isAscending ? wordOf(row.key, depth) : ~wordOf(row.key, depth);
  sortByWord(rows, scratch);
  const std::size_t next = depth + sizeof(KeyedRow::word);
  for (auto first = rows.begin(); first != rows.end();) {
    const auto last = std::find_if(first, rows.end(), [&](const KeyedRow& row) { return row.word != first->word; });
    const bool hasMoreBytes = std::any_of(first, last, [next](const KeyedRow& row) { return row.key.size() > next; });
    const auto count = static_cast<std::size_t>(last - first);
    if (count > 1 && hasMoreBytes) sortFrom(next, {first, last}, scratch.first(count), isAscending);
    first = last;
  }
}

}  // namespace

void sortByKey(std::span<KeyedRow> rows, bool isAscending) {
  std::vector<KeyedRow> scratch(rows.begin(), rows.end());
  sortFrom(0, rows, scratch, isAscending);
}

Jobs inOrder(const std::vector<KeyedRow>& rows, Jobs&& jobs) {
  Jobs result;
  result.reserve(rows.size());
  for (const KeyedRow& row : rows) result.push_back(std::move(jobs[row.index]));
  return result;
}

void NameSorter::add(std::shared_ptr<Job> job) {
  m_haveAsciiKeys = m_haveAsciiKeys && m_collator.appendAsciiKey(m_asciiKeys, job->name);
  m_ends.push_back(m_asciiKeys.size());
  m_jobs.push_back(std::move(job));
}

NameSorter::Rows NameSorter::rows() const {
  Rows rows;
  rows.reserve(m_jobs.size());
  std::size_t begin = 0;
  for (std::size_t i = 0; i < m_jobs.size(); ++i) {
    if (m_haveAsciiKeys) {
      rows.emplace_back(std::string_view(m_asciiKeys).substr(begin, m_ends[i] - begin), i);
      begin = m_ends[i];
    } else {
      rows.emplace_back(m_jobs[i]->sortKey(Job::SortText::Name, m_collator), i);
    }
  }
  return rows;
}

void NameSorter::sortByPath(Rows::iterator first, Rows::iterator last) const {
  const auto path = [this](const KeyedRow& row) -> const std::string& { return m_jobs[row.index]->url.text(); };
  std::sort(first, last, [&](const KeyedRow& a, const KeyedRow& b) { return path(a) < path(b); });
}

Jobs NameSorter::sorted() && {
  Rows sorted = rows();
  sortByKey(sorted, true);
  for (auto first = sorted.begin(); first != sorted.end();) {
    const auto last = std::find_if(first, sorted.end(), [&](const KeyedRow& row) { return !row.hasKeyOf(*first); });
    if (last - first > 1) sortByPath(first, last);
    first = last;
  }
  return inOrder(sorted, std::move(m_jobs));
}

}  // namespace mirvel
