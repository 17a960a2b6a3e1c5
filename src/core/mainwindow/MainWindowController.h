#pragma once

#include <string>

#include "core/base/Signal.h"
#include "core/ports/Interface.h"
#include "core/session/Mode.h"

namespace mirvel {

class Catalogue;
class CurrentMode;
class Drafts;
class Editing;
class Fetcher;
class Job;
class Selection;
struct Foundation;
struct Platform;
struct Shell;

/// The main window as a whole: its title, its mode, and the question about unsaved changes. Shows the selected job
/// whenever a selection is made, and starts a scan when nothing is selected any more. For the main thread.
class MainWindowController {
 public:
  /// All outlive it.
  MainWindowController(Foundation& foundation, const Platform& platform, const Shell& shell, const Catalogue& catalogue,
                       Selection& selection, CurrentMode& currentMode, Editing& editing, Fetcher& fetcher,
                       Drafts& drafts);

  /// The application's name, with that of the selected job.
  std::string title() const;
  void updateTitle();
  /// Shows all jobs in another mode, without selection and filter, and starts a scan.
  void switchMode(Mode mode);
  /// Asks what to do with unsaved changes, in a sheet: to keep them, which closing the sheet does too, or to drop them.
  void unsavedChangesAlert();
  /// Asks the same because the application is to quit; if the changes may be dropped, it quits. Until the answer a
  /// second call does nothing, and another question of the kind counts as this one.
  void askBeforeQuitting();
  /// From `askBeforeQuitting` to the answer.
  bool isTerminating() const { return m_isTerminating; }
  /// Whether the desktop session may end now. The user is asked as before quitting, and waited for.
  bool sessionMayEnd();
  void toggleSystemJobs();
  void toggleTitleBar();
  /// The user entered or left full screen.
  void fullScreenDidChange(bool isFullScreen);
  /// Shows the job's file in the file viewer; of a login item, the settings where it is listed.
  void revealInFinder(const Job& job);

 private:
  void selectedJobDidChange();
  Alert unsavedChangesQuestion() const;
  void answerUnsavedChanges(int button);

  Foundation& m_foundation;
  const Platform& m_platform;
  const Shell& m_shell;
  const Catalogue& m_catalogue;
  Selection& m_selection;
  CurrentMode& m_currentMode;
  Editing& m_editing;
  Fetcher& m_fetcher;
  Drafts& m_drafts;
  Subscription m_selectionChanged;
  bool m_isTerminating = false;
};

}  // namespace mirvel
