#include "core/scan/NameSorter.h"

#include <algorithm>

namespace mirvel {

void NameSorter::add(std::shared_ptr<Job> job) {
  m_rows.emplace_back(job->sortKey(Job::SortText::Name, m_collator), m_rows.size());
  m_jobs.push_back(std::move(job));
}

void NameSorter::sortByPath(Rows::iterator first, Rows::iterator last) const {
  const auto path = [this](const KeyedRow& row) -> const std::string& { return m_jobs[row.index]->url.text(); };
  std::sort(first, last, [&](const KeyedRow& a, const KeyedRow& b) { return path(a) < path(b); });
}

Jobs NameSorter::sorted() && {
  sortByKey(m_rows, true);
  for (auto first = m_rows.begin(); first != m_rows.end();) {
    const auto last = std::find_if(first, m_rows.end(), [&](const KeyedRow& row) { return !row.hasKeyOf(*first); });
    if (last - first > 1) sortByPath(first, last);
    first = last;
  }
  return inOrder(m_rows, std::move(m_jobs));
}

}  // namespace mirvel
