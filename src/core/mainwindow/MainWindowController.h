#pragma once

#include <functional>
#include <string>

#include "core/base/Signal.h"
#include "core/ports/Interface.h"
#include "core/session/Mode.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class Drafts;
class Job;

/// The main window as a whole: its title, its mode, and the question about unsaved changes. Updates title and details
/// when the selection changes, and starts a scan when nothing is selected any more. Each method tolerates that the
/// window, the details or the editor aren't registered in the shell. For the main thread.
class MainWindowController {
 public:
  /// All arguments must outlive this object.
  MainWindowController(const SessionContext& session, Drafts& drafts);

  /// The name of the application, followed by that of the job whose details are shown: "Mirvel – backup".
  std::string title() const;
  /// Sets the title of the window, and whether the title bar shows it.
  void updateTitle();
  /// Shows all jobs in another mode, stores the mode in the settings, clears selection and filter, and starts a scan.
  /// With unsaved changes, stays in the current mode.
  void switchMode(Mode mode);
  /// Asks, in a sheet, whether to keep unsaved changes or discard them. Closing the sheet keeps them.
  void unsavedChangesAlert();
  /// Asks the same in order to quit: if the changes may be discarded, the application quits. Until the question is
  /// answered, further calls do nothing, and the answer to any `unsavedChangesAlert` counts as the answer.
  void askBeforeQuitting();
  /// True from `askBeforeQuitting` until the user keeps the changes.
  bool isTerminating() const { return m_isTerminating; }
  /// Says, in a sheet, that quitting waits for a save or deletion, and asks whether to quit without waiting or not to
  /// quit.
  void askWhileQuittingWaits(std::function<void(bool quitsNow)> answer);
  /// Whether the desktop session may end now. Asks about unsaved changes and waits for the answer.
  bool sessionMayEnd();
  /// Changes the setting that shows the jobs of the system.
  void toggleSystemJobs();
  /// Changes the setting that shows the title in the title bar.
  void toggleTitleBar();
  /// To be called when the user has entered or left full screen. Stores it for the next start.
  void fullScreenDidChange(bool isFullScreen);
  /// Shows the job's file in the file manager. For a login item, opens the settings that list it.
  void revealInFinder(const Job& job);

 private:
  void selectedJobDidChange();
  Alert unsavedChangesQuestion() const;
  void answerUnsavedChanges(int button);

  const SessionContext m_session;
  Drafts& m_drafts;
  Subscription m_selectionChanged;
  bool m_isTerminating = false;
};

}  // namespace mirvel
