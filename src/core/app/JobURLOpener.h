#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/messages/JobAddress.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class CurrentMode;
class Editing;
class Fetcher;
class MainWindowController;
class Selection;
struct Notifications;
struct Shell;

/// Selects the jobs that other programs ask to see, by a URL. For the main thread.
class JobURLOpener {
 public:
  /// All arguments must outlive this object.
  JobURLOpener(MainQueue& queue, const CurrentMode& currentMode, const Selection& selection, const Shell& shell,
               const Editing& editing, const Fetcher& fetcher, MainWindowController& mainWindow,
               Notifications& notifications);

  /// Selects the job of the first URL (see `JobAddress`) after 0.3 s, or after the first scan if that is later, and
  /// opens its log if the URL says so; but not the log of another job if there is none at the URL. If there are unsaved
  /// changes, asks about them instead and drops the URL. All other URLs are ignored. Of several that wait for the first
  /// scan, only the last counts.
  void applicationOpenURLs(const std::vector<std::string>& urls);

 private:
  void selectOpened();
  void show(const JobAddress& address);

  const CurrentMode& m_currentMode;
  const Selection& m_selection;
  const Shell& m_shell;
  const Editing& m_editing;
  const Fetcher& m_fetcher;
  MainWindowController& m_mainWindow;
  Notifications& m_notifications;
  std::optional<JobAddress> m_opened;  ///< the job that is still to be selected
  Subscription m_scanned;              ///< while `m_opened` waits for a scan
  Delay m_delay;
};

}  // namespace mirvel
