#pragma once

#include <memory>
#include <vector>

#include "core/catalogue/Job.h"
#include "core/locale/Collator.h"
#include "core/scan/KeyedRow.h"

namespace mirvel {

/// Jobs in the order of their names, and of their paths where names are the same, as a folder is listed in no order
/// that would last. Takes them one by one as they are made, when all that the order needs is at hand.
class NameSorter {
 public:
  /// The collator outlives the sorter.
  explicit NameSorter(const Collator& collator) : m_collator(collator) {}

  void add(std::shared_ptr<Job> job);
  Jobs sorted() &&;

 private:
  using Rows = std::vector<KeyedRow>;

  void sortByPath(Rows::iterator first, Rows::iterator last) const;

  const Collator& m_collator;
  Jobs m_jobs;
  Rows m_rows;
};

}  // namespace mirvel
