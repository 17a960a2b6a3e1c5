#include "core/mainwindow/ListSort.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "core/catalogue/KeyedRow.h"
#include "core/mainwindow/StableSort.h"
#include "core/plist/Plist.h"

namespace mirvel {

namespace {

/// The text by which a column sorts, where it sorts by one.
std::optional<Job::SortText> sortTextOf(Column::List column) {
  switch (column) {
    case Column::List::name:
      return Job::SortText::Name;
    case Column::List::summary:
      return Job::SortText::Summary;
    case Column::List::run:
      return Job::SortText::Run;
    default:
      return std::nullopt;
  }
}

void sortByText(Jobs& jobs, Job::SortText text, bool isAscending, const Collator& collator) {
  std::vector<KeyedRow> rows;
  rows.reserve(jobs.size());
  for (const auto& job : jobs) rows.emplace_back(job->sortKey(text, collator), rows.size());
  sortByKey(rows, isAscending);
  jobs = inOrder(rows, std::move(jobs));
}

}  // namespace

bool standsBefore(const Job& a, const Job& b, Column::List column, bool isAscending) {
  const launchd::Plist* const recordOfA = a.record();
  const launchd::Plist* const recordOfB = b.record();
  switch (column) {
    case Column::List::kind:
      return isAscending ? a.kind.rawValue() < b.kind.rawValue() : a.kind.rawValue() > b.kind.rawValue();
    case Column::List::enabled:
      return isAscending ? !a.isDisabled() : !b.isDisabled();
    case Column::List::keepAlive:
      if (!recordOfA || !recordOfB) return false;
      return (isAscending && recordOfA->keepAlive) || recordOfB->keepAlive;
    case Column::List::scheduled:
      if (!recordOfA || !recordOfB) return false;
      return isAscending ? recordOfB->scheduled.empty() : recordOfA->scheduled.empty();
    default:
      return false;
  }
}

void sortJobs(Jobs& jobs, Column::List column, bool isAscending, const Collator& collator) {
  if (const auto text = sortTextOf(column)) {
    sortByText(jobs, *text, isAscending, collator);
    return;
  }
  stableSort(jobs,
             [column, isAscending](const auto& a, const auto& b) { return standsBefore(*a, *b, column, isAscending); });
}

}  // namespace mirvel
