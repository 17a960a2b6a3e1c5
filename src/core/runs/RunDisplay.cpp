#include "core/runs/RunDisplay.h"

#include <cstddef>

#include "core/runs/RunStateTexts.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

constexpr double pauseBetweenFilterings = 0.5;  // in seconds

// Finding the entry of one job takes a search, so that redrawing everything is faster than redrawing many.
constexpr std::size_t mostSingleEntries = 20;

}  // namespace

RunDisplay::RunDisplay(const SessionContext& session, JobRuns& runs)
    : m_session(session),
      m_runs(runs),
      m_limit(session.platform.mainQueue),
      m_changed(runs.changed().subscribe([this](const Jobs& jobs) { runsChanged(jobs); })),
      m_edited(session.editing.edited().subscribe([this] {
        if (m_isOutdated) filterAgain();
      })) {
  CurrentMode& mode = session.currentMode;
  const RunStateTexts texts(session.foundation.localize);
  mode.setTest(JobSubset::Failed, [this](const Job& job) { return m_runs.state(job) == JobState::Failed; });
  mode.setTest(JobSubset::Running, [this](const Job& job) {
    const JobState state = m_runs.state(job);
    return state == JobState::Running || state == JobState::Stopping;
  });
  for (const auto& word : {texts.failedWord(), std::string("failed")}) mode.addFilterWord(word, JobSubset::Failed);
  for (const auto& word : {texts.runningWord(), std::string("running")}) mode.addFilterWord(word, JobSubset::Running);
}

RunDisplay::~RunDisplay() {
  m_session.currentMode.setTest(JobSubset::Failed, {});
  m_session.currentMode.setTest(JobSubset::Running, {});
}

void RunDisplay::runsChanged(const Jobs& jobs) {
  if (isFilterAffected()) m_limit.interval("filter", pauseBetweenFilterings, [this] { filterAgain(); });
  ModeType* const view = m_session.currentMode.view();
  if (!view || jobs.empty()) return;
  if (jobs.size() > mostSingleEntries) return view->redraw();
  for (const auto& job : jobs) view->reloadJob(job);
}

bool RunDisplay::isFilterAffected() const {
  const CurrentMode& mode = m_session.currentMode;
  return mode.dependsOn(JobSubset::Failed) || mode.dependsOn(JobSubset::Running);
}

/// Nothing is filtered while there are unsaved changes, so that the edited job stays in view.
void RunDisplay::filterAgain() {
  m_isOutdated = m_session.editing.hasUnsavedChanges();
  if (!m_isOutdated && isFilterAffected()) m_session.currentMode.update(m_session.catalogue.jobs());
}

}  // namespace mirvel
