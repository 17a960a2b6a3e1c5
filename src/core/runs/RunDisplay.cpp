#include "core/runs/RunDisplay.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/runs/RunStateTexts.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

constexpr double pauseBetweenFilterings = 0.5;  // in seconds

// Finding the entry of one job takes a search, so that redrawing everything is faster than redrawing many.
constexpr std::size_t mostSingleEntries = 20;

}  // namespace

RunDisplay::RunDisplay(const SessionContext& session, JobRuns& runs, const RunMoments& moments)
    : m_session(session),
      m_runs(runs),
      m_moments(moments),
      m_delay(session.platform.mainQueue),
      m_limit(session.platform.mainQueue),
      m_changed(runs.changed().subscribe([this](const Jobs& jobs) { runsChanged(jobs); })),
      m_edited(session.editing.edited().subscribe([this] {
        if (m_isOutdated) filterAgain();
      })),
      m_visibilityChanged(runs.visibilityChanged().subscribe([this] { catchUp(); })),
      // While the machine sleeps, timers stop; the user then returns to the window.
      m_appStatusChanged(session.notifications.appStatusChanged.subscribe([this] {
        m_runs.verify();
        followDay();
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
  m_isOutdated = m_session.editing.hasUnsavedChanges() || !m_runs.isWindowVisible();
  if (!m_isOutdated && isFilterAffected()) m_session.currentMode.update(m_session.catalogue.jobs());
}

void RunDisplay::catchUp() {
  if (m_runs.isWindowVisible() && m_isOutdated) filterAgain();
  followDay();
}

/// Redraws if another day has begun, and waits for the end of the day while the window is visible.
void RunDisplay::followDay() {
  if (!m_runs.isWindowVisible()) return;
  const double now = m_session.platform.clock.secondsSince1970();
  if (!m_today || !m_today->contains(now)) {
    const bool isAnother = m_today.has_value();
    m_today = m_moments.dayOf(now);
    ModeType* const view = isAnother ? m_session.currentMode.view() : nullptr;
    if (view) view->redraw();
    if (isAnother) m_runs.dayDidChange();
  }
  if (std::exchange(m_isWaiting, true)) return;
  constexpr double longestWait = 900;  // in case that the clock is set, or the machine sleeps
  m_delay(std::clamp(m_today->end - now, 0.0, longestWait), [this] {
    m_isWaiting = false;
    followDay();
  });
}

}  // namespace mirvel
