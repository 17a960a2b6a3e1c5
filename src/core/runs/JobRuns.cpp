#include "core/runs/JobRuns.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "core/session/Catalogue.h"

namespace mirvel {

JobRuns::JobRuns(Catalogue& catalogue)
    : m_catalogue(catalogue), m_catalogueChanges(catalogue.willChange().subscribe([this](const Jobs&, const Jobs&) {
        m_jobs.clear();
        m_resolved.clear();
        m_isIndexed = false;
      })) {}

void JobRuns::begin() {
  if (std::exchange(m_hasBegun, true)) return;
  for (const auto& source : m_sources) {
    source->begin([this](RunDelivery delivery) { receive(std::move(delivery)); });
    if (m_isWindowVisible) source->setVisible(true);
  }
}

void JobRuns::setWindowVisible(bool isVisible) {
  if (std::exchange(m_isWindowVisible, isVisible) == isVisible) return;
  for (const auto& source : m_sources) {
    if (m_hasBegun) source->setVisible(isVisible);
  }
  m_visibilityChanged.post();
}

void JobRuns::verify() {
  if (!m_hasBegun || !m_isWindowVisible) return;
  for (const auto& source : m_sources) source->setVisible(true);
}

const JobReport* JobRuns::reportOfLabel(const Job& job, RunDomain theDomain) const {
  if (!job.kind.canBeLoaded()) return nullptr;
  const auto& reports = domain(theDomain).reports;
  const auto found = reports.find(job.name);
  return found == reports.end() ? nullptr : &found->second;
}

/// Hosts report a path as they were asked to load it, where symbolic links may have been resolved.
bool JobRuns::isAbout(const JobReport& report, const Job& job) const {
  if (report.path == job.url.text()) return true;
  if (report.isPartial && report.path.empty()) return true;  // its host knows labels only
  const std::filesystem::path path = job.url.path();
  if (std::filesystem::path(report.path).filename() == path.filename()) {
    // Usually a folder is the link, which is the same one for thousands of jobs.
    if (resolved(path.parent_path()) + '/' + path.filename().native() == report.path) return true;
  }
  return report.path == resolved(path);
}

/// Accesses the disk once for each path.
const std::string& JobRuns::resolved(const std::filesystem::path& path) const {
  const auto [found, isNew] = m_resolved.try_emplace(path.native());
  if (isNew) {
    std::error_code failure;
    found->second = std::filesystem::weakly_canonical(path, failure).native();
  }
  return found->second;
}

const JobReport* JobRuns::report(const Job& job) const {
  const RunDomain own = domainOf(job.originalKind);
  const JobReport* const report = reportOfLabel(job, own);
  if (report && isAbout(*report, job)) return report;
  // One host runs all jobs for a user who is root, and on the machine of a demo.
  const JobReport* const other = reportOfLabel(job, own == RunDomain::User ? RunDomain::Root : RunDomain::User);
  return other && !other->isPartial && isAbout(*other, job) ? other : nullptr;
}

JobState JobRuns::state(const Job& job) const {
  if (!job.kind.canBeLoaded()) return job.kind.isLaunchd() ? JobState::NotLoaded : JobState::Unknown;
  const JobReport* const known = report(job);
  if (!known) return domain(domainOf(job.originalKind)).isKnown ? JobState::NotLoaded : JobState::Unknown;
  if (known->process > 0) return known->isStopping ? JobState::Stopping : JobState::Running;
  if (!known->isLoaded) return JobState::NotLoaded;
  return !known->runs.empty() && hasFailed(known->runs.back()) ? JobState::Failed : JobState::Waiting;
}

const RunReport* JobRuns::lastRun(const Job& job) const {
  const JobReport* const known = report(job);
  return known && !known->runs.empty() ? &known->runs.back() : nullptr;
}

std::string_view JobRuns::otherFile(const Job& job) const {
  const JobReport* const report = reportOfLabel(job, domainOf(job.originalKind));
  const bool isOther = report && report->isLoaded && !isAbout(*report, job);
  return isOther ? std::string_view(report->path) : std::string_view();
}

const std::unordered_map<std::string, JobReport>& JobRuns::reports(RunDomain theDomain) const {
  return domain(theDomain).reports;
}

const std::string& JobRuns::gap(RunDomain theDomain) const {
  return domain(theDomain).gap;
}

void JobRuns::receive(RunDelivery delivery) {
  Domain& known = domain(delivery.domain);
  Jobs jobs;
  indexJobs();
  for (JobReport& report : delivery.reports) {
    if (report.isTest) continue;
    const std::string label = report.label;
    known.reports.insert_or_assign(label, std::move(report));
    addJobs(label, jobs);
  }
  for (const std::string& label : delivery.removed) {
    if (known.reports.erase(label) > 0) addJobs(label, jobs);
  }
  known.gap = std::move(delivery.gap);
  known.host = delivery.host;
  const bool isFirst = delivery.isLast && known.gap.empty() && !std::exchange(known.isKnown, true);
  // Then jobs without a report aren't unknown any more, but not loaded.
  m_changed.post(isFirst ? m_catalogue.jobs() : jobs);
}

/// Adds the jobs of a label to those that have changed.
void JobRuns::addJobs(const std::string& label, Jobs& jobs) const {
  const auto [first, last] = m_jobs.equal_range(label);
  for (auto entry = first; entry != last; ++entry) jobs.push_back(entry->second);
}

void JobRuns::indexJobs() {
  if (std::exchange(m_isIndexed, true)) return;
  for (const auto& job : m_catalogue.jobs()) {
    if (job->kind.canBeLoaded()) m_jobs.emplace(job->name, job);
  }
}

}  // namespace mirvel
