#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/files/URL.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class CurrentMode;
class Editing;
class Fetcher;
class MainWindowController;
struct Notifications;

/// Selects the jobs that other programs ask to see, by a URL. For the main thread.
class JobURLOpener {
 public:
  /// All arguments must outlive this object.
  JobURLOpener(MainQueue& queue, const CurrentMode& currentMode, const Editing& editing, const Fetcher& fetcher,
               MainWindowController& mainWindow, Notifications& notifications);

  /// Selects the job of the first URL (see `jobURL`) after 0.3 s, or after the first scan if that is later. If there
  /// are unsaved changes, asks about them instead and drops the URL. All other URLs are ignored. Of several that wait
  /// for the first scan, only the last counts.
  void applicationOpenURLs(const std::vector<std::string>& urls);

 private:
  void selectOpened();

  const CurrentMode& m_currentMode;
  const Editing& m_editing;
  const Fetcher& m_fetcher;
  MainWindowController& m_mainWindow;
  Notifications& m_notifications;
  std::optional<URL> m_opened;  ///< the job that is still to be selected
  Subscription m_scanned;       ///< while `m_opened` waits for a scan
  Delay m_delay;
};

/// The URL of a job for other programs: the path of its file in base64, in place of the host. Any bytes are allowed.
/// Example: `"/a"` → `"mirvel://L2E="`.
std::string jobURL(const std::string& path);

}  // namespace mirvel
