#pragma once

#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"
#include "core/runs/JobRuns.h"
#include "core/session/SessionContext.h"

namespace mirvel {

/// Keeps what the main window shows up to date with the runs of jobs: redraws the entries of jobs whose state has
/// changed, and filters again if the filter depends on states. Defines the tests and words of that filter. For the main
/// thread.
class RunDisplay {
 public:
  /// Both must outlive this object.
  RunDisplay(const SessionContext& session, JobRuns& runs);
  ~RunDisplay();
  RunDisplay(const RunDisplay&) = delete;
  RunDisplay& operator=(const RunDisplay&) = delete;

 private:
  void runsChanged(const Jobs& jobs);
  bool isFilterAffected() const;
  void filterAgain();

  const SessionContext m_session;
  const JobRuns& m_runs;
  Limit m_limit;
  Subscription m_changed;
  Subscription m_edited;
  bool m_isOutdated = false;  ///< the filtered jobs, while there are unsaved changes
};

}  // namespace mirvel
