#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/files/URL.h"
#include "core/ports/FolderMonitor.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Program;

/// Handles the events of the application itself. For the main thread.
class AppDelegate {
 public:
  /// Creates the user's agents folder if it is missing. A failure is shown, and the program runs without the folder.
  explicit AppDelegate(Program& program);

  /// To be called when the window is there.
  void applicationDidFinishLaunching();
  /// Whether the application may quit now. If not, the user is asked about unsaved changes, and the application quits
  /// if they may be dropped; or a save or deletion is under way, and the application quits when that has ended. A
  /// second call doesn't wait for it.
  bool applicationShouldTerminate();
  /// Quits without waiting for answers, after a signal: an unsaved edit is kept (see `Drafts`). If it can't be kept,
  /// quits only after the user was asked, or at the second call.
  void endUnasked();
  /// Keeps an unsaved edit, since the program may be ended at any moment.
  void keepEdit();
  /// Closing the last window always quits.
  static constexpr bool applicationShouldTerminateAfterLastWindowClosed() { return true; }
  void applicationDidBecomeActive();
  void applicationDidResignActive();
  /// Selects the job of the first URL (see `jobURL`) as soon as a scan has found the jobs. If there are unsaved
  /// changes, asks about them instead. Ignores all other URLs.
  void applicationOpenURLs(const std::vector<std::string>& urls);

  /// An update is about to install: the agent is switched off.
  void updateWillInstall();

 private:
  void setUpMonitors();
  void updateAgent();
  void renewRegistration();
  void folderDidChange();
  bool isHelperAtWork() const;
  bool waitsForHelper();
  void selectOpened();

  Program& m_program;
  Limit m_limit;
  std::vector<std::unique_ptr<FolderMonitor>> m_monitors;
  std::optional<URL> m_opened;  ///< of the job that is to be selected
  Subscription m_scanned;       ///< while a URL waits for a scan
  Subscription m_saved;         ///< while a quit waits for a helper
  Subscription m_deleted;       ///< the same
  bool m_endsUnasked = false;
  bool m_isWaiting = false;  ///< a quit, for a helper
  Delay m_delay;
};

/// The URL by which other programs address the job of a file: its path in base64 in the host.
std::string jobURL(const std::string& path);

}  // namespace mirvel
