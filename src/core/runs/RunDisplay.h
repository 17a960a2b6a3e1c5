#pragma once

#include <optional>

#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"
#include "core/runs/JobRuns.h"
#include "core/runs/RunMoments.h"
#include "core/session/SessionContext.h"

namespace mirvel {

/// Keeps what the main window shows up to date with the runs of jobs: redraws the entries of jobs whose state has
/// changed, and filters again if the filter depends on states; at midnight, when "today" becomes "yesterday", redraws
/// everything. Does nothing while the window is hidden, but catches up when it is shown. Defines the tests and words of
/// that filter. For the main thread.
class RunDisplay {
 public:
  /// All must outlive this object.
  RunDisplay(const SessionContext& session, JobRuns& runs, const RunMoments& moments);
  ~RunDisplay();
  RunDisplay(const RunDisplay&) = delete;
  RunDisplay& operator=(const RunDisplay&) = delete;

 private:
  void runsChanged(const Jobs& jobs);
  bool isFilterAffected() const;
  void filterAgain();
  void catchUp();
  void followDay();

  const SessionContext m_session;
  JobRuns& m_runs;
  const RunMoments& m_moments;
  Delay m_delay;
  Limit m_limit;
  Subscription m_changed;
  Subscription m_edited;
  Subscription m_visibilityChanged;
  Subscription m_appStatusChanged;
  bool m_isOutdated = false;  ///< the filtered jobs, while there are unsaved changes or the window is hidden
  std::optional<RunMoments::Day> m_today;  ///< none before the window was first shown
  bool m_isWaiting = false;                ///< for the end of the day
};

}  // namespace mirvel
