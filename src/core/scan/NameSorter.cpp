#include "core/scan/NameSorter.h"

#include <algorithm>
#include <string_view>

namespace mirvel {

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
