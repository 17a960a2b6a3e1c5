#pragma once

#include <string>

#include "core/catalogue/Job.h"

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
  bool canDeleteJob(const Job& job) const;
  /// Asks what to do with unsaved changes, in a sheet: to stay, or to drop them and go on with what was wanted.
  void unsavedChangesAlert();
  /// Commands on the catalogue: a scan, now, and the system kinds shown or hidden. Neither does anything it may not.
  bool canRefresh() const;
  void refresh();
  void toggleSystemJobs();
  /// Shows the selected job's file, if there is a selected job.
  bool canRevealSelected() const;
  void revealSelected();
  /// Shows the job's file in the file viewer; of a login item, the settings where it is listed.
  void revealInFinder(const Job& job);

 private:
  void answerUnsavedChanges(int button);

  Program& m_program;
};

}  // namespace mirvel
