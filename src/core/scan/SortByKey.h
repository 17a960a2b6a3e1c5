#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/locale/Collator.h"

// Sorting jobs by the sort keys of a collator, byte strings whose order is that of the texts. Jobs cache their keys, so
// sorting again compares bytes only. Keys have long common prefixes ("com.apple.") and are scattered in memory, so that
// std::sort on the strings spends most of its time on cache misses. Rows that contain the next eight bytes of the key
// avoid that: sorting again takes less than a quarter of the time of comparing with the collator.

namespace mirvel {

/// The position of a job in a list, and the sort key by which it is to be sorted.
struct KeyedRow {
  /// The key must outlive the row.
  KeyedRow(std::string_view theKey, std::size_t theIndex) : key(theKey), index(theIndex) {}

  std::string_view key;
  std::size_t index;
  /// The eight bytes of the key that were compared last. Equal for rows with equal keys once they are sorted.
  std::uint64_t word = 0;

  /// Whether the keys are equal. Only for rows that have been sorted together.
  bool hasKeyOf(const KeyedRow& other) const { return word == other.word && key == other.key; }
};

/// Sorts the rows by the bytes of their keys. Stable in both directions: rows with equal keys keep their order,
/// provided that the rows were in the order of their indexes before.
void sortByKey(std::span<KeyedRow> rows, bool isAscending);

/// Moves the jobs into the order of the rows. There must be one row for each job.
Jobs inOrder(const std::vector<KeyedRow>& rows, Jobs&& jobs);

/// Sorts jobs by name and, among equal names, by path, since the order in which a folder is read isn't stable. Takes
/// the jobs one by one, so that each sort key is computed while the job is still in the processor's cache.
class NameSorter {
 public:
  /// The collator must outlive the sorter.
  explicit NameSorter(const Collator& collator) : m_collator(collator) {}

  void add(std::shared_ptr<Job> job);
  /// The jobs in their order. Consumes the sorter.
  Jobs sorted() &&;

 private:
  using Rows = std::vector<KeyedRow>;

  Rows rows() const;
  void sortByPath(Rows::iterator first, Rows::iterator last) const;

  const Collator& m_collator;
  Jobs m_jobs;
  // The fast keys, one after the other, as long as all names have one: they can't be mixed with the others.
  bool m_haveAsciiKeys = true;
  std::string m_asciiKeys;
  std::vector<std::size_t> m_ends;
};

}  // namespace mirvel
