#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/base/Signal.h"
#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "core/session/Unfinished.h"

namespace mirvel {

class Busy;
class Clock;
class Console;
class Launchd;
class Selection;
struct Foundation;
struct Shell;

/// Owns the unsaved edits of the selected job: every change of its record starts here and can be undone. For the main
/// thread.
class Editing {
 public:
  /// What an edit is to undo: a step of its own, or part of the typing in a field.
  enum class Step { Begins, Continues };

  /// All outlive it.
  Editing(const Selection& selection, Shell& shell, const Busy& saving, const Foundation& foundation,
          const Clock& clock, Console& console);

  /// Whether the selected job was edited and not saved since.
  bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
  void setUnsavedChanges(bool hasUnsavedChanges);
  /// Posted at each edit, undo and redo, and when the changes have been saved or discarded. The record may change only
  /// after that.
  Signal<>& edited() { return m_edited; }
  /// Posted when undo has returned to the job as it was read, so that a scan which was held back can be made.
  Signal<>& reverted() { return m_reverted; }

  /// The selected launchd job, marked as changed: the caller's next changes of it can be undone. An edit that continues
  /// joins the last step if that was of the same field and less than two seconds ago. Null if no launchd job is
  /// selected; nothing has happened then.
  Launchd* markJobChanged(Step step = Step::Begins, std::string_view field = {});
  /// Replaces the whole record of the selected job by what a job file with this text holds, its unknown keys included,
  /// as one step. The kinds, now and as read, stay. Errors are those of `Plist::readTolerantly`, and `NotFound` if no
  /// launchd job is selected.
  Result<void> replaceRecord(const std::string& text);

  /// Input for the selected job that its record can't hold. To be changed after `markJobChanged` only.
  Unfinished& unfinished();

  bool canUndo() const;
  bool canRedo() const;
  /// Takes the last step back, and shows that in the editor. When no step is left the job counts as unchanged.
  void undo();
  void redo();
  /// Forgets the steps: the editor is left.
  void reset();

  // What the edit knows of the job's file. Checksums are those of `Checksum`.

  /// The contents from which the selected job was read; empty if unknown.
  std::string fileChecksum() const;
  /// Whether the file of the selected job may have these contents without anybody else having written it: the job was
  /// read from them, or the user knows of them, or they were sent to the file. True if it isn't known what was read.
  bool expectsInFile(const std::string& checksum) const;
  /// The user knows that the file of the selected job now has other contents.
  void setFileChecksum(std::string checksum);
  /// The text is on its way to the job's file. A save that fails may still have written it.
  void sent(const std::shared_ptr<Launchd>& job, const std::string& text);
  /// Reads the job's record from its file's new contents, ahead of the scan. Returns false, with nothing changed, if
  /// the text is no job file.
  bool take(const std::shared_ptr<Launchd>& job, const std::string& text);
  /// The user agreed to lose something of these contents at a save. Forgotten with the steps.
  void agreed(const std::shared_ptr<Launchd>& job, std::string checksum);
  bool hasAgreed(const std::shared_ptr<Launchd>& job, const std::string& checksum) const;

 private:
  struct State {
    jobfile::Plist record;
    Kind kind;
    Unfinished unfinished;
  };

  std::shared_ptr<Launchd> selected() const;
  bool isAbout(const std::shared_ptr<Launchd>& job) const;
  void began(const std::shared_ptr<Launchd>& job, std::string fileChecksum);
  std::string checksumAtStart(const std::shared_ptr<Launchd>& job) const;
  std::string checksumLastSeen(const std::shared_ptr<Launchd>& job) const;
  void dropOldSteps();
  bool continuesStep(Step step, std::string_view field);
  void swap(std::vector<State>& from, std::vector<State>& to);

  const Selection& m_selection;
  Shell& m_shell;
  const Busy& m_saving;
  const Foundation& m_foundation;
  const Clock& m_clock;
  Console& m_console;
  Signal<> m_edited;
  Signal<> m_reverted;
  std::weak_ptr<Launchd> m_job;  ///< whose steps these are
  std::string m_fileChecksum;
  std::string m_sentChecksum;
  std::string m_agreedChecksum;
  std::weak_ptr<Launchd> m_writtenJob;  ///< the last that a save wrote
  std::string m_writtenChecksum;
  bool m_hasUnsavedChanges = false;
  bool m_wasChanged = false;  ///< before the first step
  Unfinished m_unfinished;
  std::vector<State> m_done;
  std::vector<State> m_undone;
  std::string m_field;  ///< of the last step; empty: it can't be continued
  double m_lastChange = 0;
};

}  // namespace mirvel
