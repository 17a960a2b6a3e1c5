#include "core/mainwindow/ListSort.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/scan/SortByKey.h"

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

/// Whether the job has what the column shows by a mark. A job that isn't launchd's is neither kept alive nor scheduled.
bool hasMark(const Job& job, Column::List column) {
  const jobfile::Plist* const record = job.record();
  switch (column) {
    case Column::List::enabled:
      return !job.isDisabled();
    case Column::List::keepAlive:
      return record && record->keepAlive;
    case Column::List::scheduled:
      return record && record->isScheduled();
    default:
      return false;
  }
}

}  // namespace

bool standsBefore(const Job& a, const Job& b, Column::List column, bool isAscending) {
  if (!isAscending) return standsBefore(b, a, column, true);
  if (column == Column::List::kind) return a.kind.rawValue() < b.kind.rawValue();
  return hasMark(a, column) && !hasMark(b, column);
}

void sortJobs(Jobs& jobs, Column::List column, bool isAscending, const Collator& collator) {
  if (const auto text = sortTextOf(column)) {
    sortByText(jobs, *text, isAscending, collator);
    return;
  }
  std::stable_sort(jobs.begin(), jobs.end(), [column, isAscending](const auto& a, const auto& b) {
    return standsBefore(*a, *b, column, isAscending);
  });
}

}  // namespace mirvel
