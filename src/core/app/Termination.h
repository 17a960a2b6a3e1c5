#pragma once

#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class ActionController;
class Busy;
class Drafts;
class Editing;
class MainWindowController;
class ScriptDocuments;
struct Shell;

/// Decides whether the application may quit, so that no edit, script, save or deletion is lost. For the main thread.
class Termination {
 public:
  /// All arguments must outlive this object.
  Termination(MainQueue& queue, const Shell& shell, const Editing& editing, Drafts& drafts, ScriptDocuments& documents,
              const ActionController& actions, MainWindowController& mainWindow, Busy& saving, Busy& deleting);

  /// Returns whether the application may quit now. If it may not:
  /// - While a save or deletion is in progress, the application quits once that has ended; a second call doesn't wait.
  ///   If it takes longer than a second, the user is told, and can quit at once or cancel.
  /// - If there are scripts with unsaved text, the user is asked about each of them. If the user cancels, or a script
  ///   can't be saved, all windows stay open and nothing is lost.
  /// - If there are unsaved changes of a job, the user is asked about them, and the application quits if they may be
  /// discarded.
  /// - After a signal, if the edit can't be kept completely as a draft, or unsaved text of scripts not as copies, the
  ///   user is asked too.
  ///
  /// If it may, the windows of scripts are closed.
  bool applicationShouldTerminate();
  /// Whether the desktop session may end now. Asks about scripts and the edited job, and waits for the answers.
  bool sessionMayEnd();
  /// Quits without asking, after a signal. Unsaved edits are kept as draft and copies; if that fails, quits only after
  /// asking the user, or on the second call.
  void endUnasked();
  /// Stores unsaved edits as draft and copies, because the process may be killed at any moment.
  void keepEdit();

 private:
  bool isHelperAtWork() const;
  bool waitsForHelper();
  bool waitsForScripts();
  bool keepsEverything();
  void tellWhatQuittingWaitsFor();
  void quitAfterHelper();

  const Shell& m_shell;
  const Editing& m_editing;
  Drafts& m_drafts;
  ScriptDocuments& m_documents;
  const ActionController& m_actions;
  MainWindowController& m_mainWindow;
  Busy& m_saving;
  Busy& m_deleting;
  Subscription m_saved, m_deleted;  ///< while a quit waits for a helper
  bool m_endsUnasked = false;
  bool m_hasReviewed = false;  ///< the user has just decided about scripts
  bool m_isWaiting = false;    ///< for a helper, to quit afterwards
  Delay m_delay;
};

}  // namespace mirvel
