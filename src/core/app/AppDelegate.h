#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/files/URL.h"
#include "core/ports/FolderMonitor.h"
#include "core/ports/Limit.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Program;

/// What the application's own events lead to. For the main thread.
class AppDelegate {
 public:
  /// Makes sure that the user's own agents folder exists; a failure is shown, and the program runs without.
  explicit AppDelegate(Program& program);

  /// To be called when the window is there.
  void applicationDidFinishLaunching();
  /// Whether the application may quit now. If not, the user is asked, and the application quits by itself if they wish;
  /// or a save or deletion is under way, and the application quits by itself when that has ended. A second try needn't
  /// wait for it.
  bool applicationShouldTerminate();
  /// Whoever ends the program doesn't wait for answers: an edit that isn't saved is kept, see `Drafts`, and the
  /// application quits; if it can't be kept, only after the user was asked, or the second time.
  void endUnasked();
  /// The same may come soon, without a word.
  void keepEdit();
  /// Closing the last window always quits.
  static constexpr bool applicationShouldTerminateAfterLastWindowClosed() { return true; }
  void applicationDidBecomeActive();
  void applicationDidResignActive();
  /// Selects the job that the first URL tells of, see `jobURL`, as soon as a scan has found the jobs. Unsaved changes
  /// stand against it, and are asked about. Other URLs, and others than the first, do nothing.
  void applicationOpenURLs(const std::vector<std::string>& urls);

  /// An update is about to install: the agent is switched off.
  void updateWillInstall();

  /// From the moment a quit was held back by the question about unsaved changes until that is answered.
  bool isTerminating = false;

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
