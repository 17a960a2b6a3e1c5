#include "core/mainwindow/JobSections.h"

#include "core/mainwindow/ModeRules.h"
#include "core/session/Catalogue.h"
#include "core/settings/Defaults.h"

namespace mirvel {

namespace {

template <typename Matches>
std::optional<IndexPath> findIf(const Sections& sections, const Matches& matches) {
  for (std::size_t section = 0; section < sections.size(); ++section) {
    const Jobs& jobs = sections[section].jobs;
    for (std::size_t item = 0; item < jobs.size(); ++item) {
      if (matches(jobs[item])) return IndexPath{section, item};
    }
  }
  return std::nullopt;
}

}  // namespace

bool JobSections::update(const Jobs& jobs) {
  const Shown& before = shown();
  const bool isEqual = areEqual(jobs, before.content);
  // The view isn't reloaded for equal jobs, so their groups must not change even if the setting has changed meanwhile.
  const bool showSystemJobs = isEqual ? before.showSystemJobs : m_defaults.showSystemJobs();
  m_shown = Shown{jobs, showSystemJobs, makeSections(jobs, showSystemJobs)};
  return !isEqual;
}

const Sections& JobSections::all() const {
  return shown().sections;
}

const JobSections::Shown& JobSections::shown() const {
  if (!m_shown) {
    const bool showSystemJobs = m_defaults.showSystemJobs();
    const Jobs& jobs = m_catalogue.jobs();
    m_shown = Shown{jobs, showSystemJobs, makeSections(jobs, showSystemJobs)};
  }
  return *m_shown;
}

std::shared_ptr<Job> JobSections::job(IndexPath path) const {
  const Sections& sections = all();
  if (path.section >= sections.size()) return nullptr;
  const Jobs& jobs = sections[path.section].jobs;
  return path.item < jobs.size() ? jobs[path.item] : nullptr;
}

std::optional<IndexPath> JobSections::find(const URL& url) const {
  return findIf(all(), [&](const auto& job) { return job->url.equalTo(url); });
}

std::optional<IndexPath> JobSections::find(const Job* job) const {
  return findIf(all(), [&](const auto& candidate) { return candidate.get() == job; });
}

}  // namespace mirvel
