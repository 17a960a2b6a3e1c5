#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/messages/JobAddress.h"
#include "core/ports/MainQueue.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class Job;
class JobControl;
class MainWindowController;
class URL;

/// Selects the jobs that other programs ask to see, by a URL. For the main thread.
class JobURLOpener {
 public:
  /// All arguments must outlive this object.
  JobURLOpener(const SessionContext& session, MainWindowController& mainWindow, JobControl& control);

  /// Selects the job of the first URL (see `JobAddress`) after 0.3 s, or after the first scan if that is later. If the
  /// filter hides the job, the filter is cleared; if jobs of the system are hidden, the user is asked whether to show
  /// them. Then opens the log of the job or, once the user has confirmed it, disables the job, if the URL says so; but
  /// not another job if there is none at the URL. If there are unsaved changes, asks about them instead and drops the
  /// URL. All other URLs are ignored. Of several that wait for a scan, only the last counts.
  void applicationOpenURLs(const std::vector<std::string>& urls);

 private:
  void selectOpened();
  void show(const JobAddress& address);
  void select(const URL& url);
  bool isHiddenWithTheSystem(const URL& url) const;
  void offerSystemJobs(const JobAddress& address);
  void askToDisable(const Job& job);

  const SessionContext m_session;
  MainWindowController& m_mainWindow;
  JobControl& m_control;
  std::optional<JobAddress> m_opened;  ///< the job that is still to be selected
  Subscription m_scanned;              ///< while `m_opened` waits for a scan
  Delay m_delay;
};

}  // namespace mirvel
