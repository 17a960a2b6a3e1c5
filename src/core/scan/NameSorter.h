#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/locale/Collator.h"
#include "core/scan/KeyedRow.h"

namespace mirvel {

/// Sorts jobs by name, and those of the same name by path, since the order in which a folder is listed isn't stable.
/// Jobs are added one by one while all that a key is made from is in the processor's cache.
class NameSorter {
 public:
  /// The collator outlives the sorter.
  explicit NameSorter(const Collator& collator) : m_collator(collator) {}

  void add(std::shared_ptr<Job> job);
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
