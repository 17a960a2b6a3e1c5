#include "helpers/host/RunHistory.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace mirvel::host {

using namespace std::chrono;

namespace {

double secondsOf(RunHistory::Moment moment) {
  return static_cast<double>(moment.time_since_epoch().count()) / 1000;
}

template <typename T>
void keepNewest(std::vector<T>& all, std::size_t most) {
  if (all.size() > most) all.erase(all.begin(), all.end() - static_cast<std::ptrdiff_t>(most));
}

/// Replaces the runs that have the same numbers, and appends the others.
void mergeRuns(std::vector<RunReport>& known, const std::vector<RunReport>& changed) {
  for (const RunReport& run : changed) {
    const auto place = std::lower_bound(known.begin(), known.end(), run.number,
                                        [](const RunReport& other, auto number) { return other.number < number; });
    if (place != known.end() && place->number == run.number) {
      *place = run;
    } else {
      known.insert(place, run);
    }
  }
  keepNewest(known, JobReport::mostRuns);
}

}  // namespace

std::optional<JobReports::Published> RunHistory::resume() {
  auto found = m_reports.read(m_label, m_isTest);
  m_isContinued = found && !*found;
  if (!found || !*found) return std::nullopt;
  continueAfter(**found);
  (*found)->report.runs.clear();
  (*found)->report.missed.clear();
  return *std::move(found);
}

void RunHistory::continueAfter(const JobReports::Published& known) {
  m_isContinued = true;
  if (known.report.runs.empty()) return;
  RunReport last = known.report.runs.back();
  for (RunReport& run : m_runs) run.number += last.number;
  m_lastNumber += last.number;
  if (!last.end) {
    last.end = RunEnd{.how = RunEnd::How::Lost};
    last.endTime = std::max(last.start, secondsOf(known.time));
    m_hasNews = true;
  }
  m_runs.insert(m_runs.begin(), std::move(last));
}

// A run that was begun immediately before the host was killed isn't in the report, and the last one there is older.
void RunHistory::prolongLost(std::int64_t process, Moment now) {
  if (m_runs.empty() || m_runs.back().process != process) return;
  if (!m_runs.back().end || m_runs.back().end->how != RunEnd::How::Lost) return;
  m_runs.back().endTime = std::max(m_runs.back().start, secondsOf(now));
  m_hasNews = true;
}

void RunHistory::begin(RunCause cause, Moment now) {
  m_runs.push_back({.number = ++m_lastNumber, .start = secondsOf(now), .cause = cause});
  m_hasNews = true;
}

void RunHistory::setProcess(std::int64_t process) {
  m_runs.back().process = process;
}

// While there is no room for a process, the attempts count as one: they would displace all other runs.
void RunHistory::finish(const RunEnd& end, Moment now) {
  m_hasNews = true;
  const auto isShortage = [](const std::optional<RunEnd>& other) {
    return other && other->how == RunEnd::How::CouldNotStart && other->obstacle == StartObstacle::Resources;
  };
  if (isShortage(end) && m_runs.size() > 1 && isShortage(m_runs[m_runs.size() - 2].end)) {
    m_runs.pop_back();
    --m_lastNumber;
  }
  m_runs.back().end = end;
  m_runs.back().endTime = secondsOf(now);
}

void RunHistory::addMissed(std::vector<MissedRun> missed) {
  if (missed.empty()) return;
  m_missed.insert(m_missed.end(), missed.begin(), missed.end());
  keepNewest(m_missed, JobReport::mostMissed);
  m_hasNews = true;
}

Result<void> RunHistory::publish(JobReport report) {
  auto known = m_reports.read(m_label, m_isTest);
  if (known && *known) {
    if (!m_isContinued) continueAfter(**known);
    report.runs = std::move((*known)->report.runs);
    report.missed = std::move((*known)->report.missed);
  }
  mergeRuns(report.runs, m_runs);
  report.missed.insert(report.missed.end(), m_missed.begin(), m_missed.end());
  keepNewest(report.missed, JobReport::mostMissed);
  // A file that can't be read for a moment isn't overwritten.
  m_isContinued = m_isContinued || known;
  auto written = known ? m_reports.write(report) : Result<void>(known.error());
  keepNewest(m_runs, written ? 1 : JobReport::mostRuns);
  if (written) m_missed.clear();
  m_hasNews = !written;
  return written;
}

}  // namespace mirvel::host
