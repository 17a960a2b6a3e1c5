#include "core/notifications/NotificationsAll.h"

#include <algorithm>
#include <utility>

#include "core/catalogue/Job.h"
#include "core/runs/JobRuns.h"
#include "core/scan/SortByKey.h"
#include "core/session/Catalogue.h"
#include "core/session/Foundation.h"

namespace mirvel {

namespace {

bool hasPrefix(const std::string& name, Kind kind, const std::vector<std::string>& prefixes) {
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [&](const std::string& prefix) { return Exceptions::isPrefixOf(prefix, name, kind); });
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

void NotificationsAll::reload() {
  NameSorter sorter(m_session.foundation.collator);
  for (const auto& job : m_session.catalogue.jobs()) {
    if (!job->kind.isLoginItem() && job->kind != Kind::extraFolder) sorter.add(job);
  }
  // Each list is read once, not for each job.
  const auto names = m_exceptions.names(), quiet = m_exceptions.quietFailures(), prefixes = m_exceptions.prefixes();
  const bool runsAgent = m_session.foundation.defaults.runAgent(), tellsFailures = m_exceptions.tellsFailures();
  const std::string home = m_session.foundation.roots.home.native();
  m_rows.clear();
  for (const auto& job : std::move(sorter).sorted()) {
    const bool isEnabled = runsAgent && !hasPrefix(job->name, job->originalKind, prefixes);
    const bool reportsRuns = job->kind.canBeLoaded() && JobRuns::domainOf(job->kind) == RunDomain::User;
    m_rows.push_back({.name = job->name,
                      .toolTip = job->kind.canBeLoaded() ? localizedDisplayPath(job->url.text(), home) : std::string(),
                      .isEnabled = isEnabled,
                      .tellsChanges = !contains(names, job->name),
                      .tellsFailures = reportsRuns ? std::optional(!contains(quiet, job->name)) : std::nullopt,
                      .areFailuresEnabled = isEnabled && tellsFailures});
  }
}

void NotificationsAll::setTellsChanges(const std::string& name, bool isOn) {
  (void)m_exceptions.setTellsChanges(name, isOn);  // the store reports a failure
  reload();
}

void NotificationsAll::setTellsFailures(const std::string& name, bool isOn) {
  (void)m_exceptions.setTellsFailures(name, isOn);  // likewise
  reload();
}

}  // namespace mirvel
