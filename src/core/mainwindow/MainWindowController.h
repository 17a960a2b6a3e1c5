#pragma once

#include <string>

#include "core/catalogue/Job.h"
#include "core/ports/Interface.h"
#include "core/session/Mode.h"

namespace mirvel {

class Program;

/// The routines of the main window. For the main thread.
class MainWindowController {
 public:
  explicit MainWindowController(Program& program) : m_program(program) {}

  /// To be run after each change of the selected job: title, details, and a scan if there is no job any more.
  void selectedJobDidChange();
  /// Marks the selected job in the current mode.
  void applySelection();
  /// The application's name, with that of the selected job.
  std::string title() const;
  void updateTitle();
  /// The mode that the user chose.
  Mode mode() const;
  /// Shows all jobs in another mode, and ends with no selection, no filter, and a scan.
  void switchMode(Mode mode);
  bool canDeleteJob(const Job& job) const;
  /// Asks whether to delete the job, in a sheet, and deletes it if the user says so; Return and
  /// Escape don't. Does nothing without a window.
  void confirmDelete(const std::shared_ptr<Job>& job);
  /// Asks what to do with unsaved changes, in a sheet: to stay, or to drop them and go on with what was wanted. To
  /// close the question is to stay.
  void unsavedChangesAlert();
  /// Whether the desktop session may end now. The user is asked as at the end of the program, and waited for.
  bool sessionMayEnd();
  /// A scan, now, unless there are unsaved changes.
  void refresh();
  void toggleSystemJobs();
  void toggleTitleBar();
  /// The user went to full screen or back.
  void fullScreenDidChange(bool isFullScreen);
  /// Shows the job's file in the file viewer; of a login item, the settings where it is listed.
  void revealInFinder(const Job& job);

 private:
  void deleteConfirmed(const std::shared_ptr<Job>& job);
  Alert unsavedChangesQuestion() const;
  void answerUnsavedChanges(int button);

  Program& m_program;
};

}  // namespace mirvel
