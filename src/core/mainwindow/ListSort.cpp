#include "core/mainwindow/ListSort.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/locale/Collator.h"
#include "core/runs/JobRuns.h"
#include "core/scan/SortByKey.h"

namespace mirvel {

namespace {

/// The text that a column compares; none if it compares something else.
std::optional<Job::SortText> sortTextOf(ListColumn column) {
  switch (column) {
    case ListColumn::Name:
      return Job::SortText::Name;
    case ListColumn::Summary:
      return Job::SortText::Summary;
    case ListColumn::Run:
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

/// Whether the column shows a mark for the job. Only jobs of launchd can be kept alive or scheduled.
bool hasMark(const Job& job, ListColumn column) {
  const jobfile::Plist* const record = job.record();
  switch (column) {
    case ListColumn::Enabled:
      return !job.isDisabled() && job.kind != Kind::extraFolder;
    case ListColumn::KeepAlive:
      return record && record->keepAlive;
    case ListColumn::Scheduled:
      return record && record->isScheduled();
    default:
      return false;
  }
}

/// A strict weak order, for columns that don't compare texts.
bool precedes(const Job& a, const Job& b, ListColumn column) {
  if (column == ListColumn::Kind) return a.kind.rawValue() < b.kind.rawValue();
  return hasMark(a, column) && !hasMark(b, column);
}

/// The number that a column about runs compares.
double runNumber(const Job& job, ListColumn column, const JobRuns& runs) {
  if (column == ListColumn::State) return static_cast<double>(runs.state(job));
  const RunReport* const run = runs.lastRun(job);
  return run ? run->start : -std::numeric_limits<double>::infinity();
}

void sortByRuns(Jobs& jobs, ListColumn column, bool isAscending, const JobRuns& runs) {
  std::vector<std::pair<double, std::shared_ptr<Job>>> rows;
  rows.reserve(jobs.size());
  for (auto& job : jobs) rows.emplace_back(runNumber(*job, column, runs), std::move(job));
  std::stable_sort(rows.begin(), rows.end(), [isAscending](const auto& a, const auto& b) {
    return isAscending ? a.first < b.first : b.first < a.first;
  });
  std::transform(rows.begin(), rows.end(), jobs.begin(), [](auto& row) { return std::move(row.second); });
}

}  // namespace

bool dependsOnRuns(ListColumn column) {
  return column == ListColumn::State || column == ListColumn::LastRun;
}

void sortJobs(Jobs& jobs, ListColumn column, bool isAscending, const Collator& collator, const JobRuns& runs) {
  if (const auto text = sortTextOf(column)) {
    sortByText(jobs, *text, isAscending, collator);
    return;
  }
  if (dependsOnRuns(column)) {
    sortByRuns(jobs, column, isAscending, runs);
    return;
  }
  std::stable_sort(jobs.begin(), jobs.end(), [column, isAscending](const auto& a, const auto& b) {
    return isAscending ? precedes(*a, *b, column) : precedes(*b, *a, column);
  });
}

}  // namespace mirvel
