#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/base/Signal.h"
#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "core/schedule/RuleRow.h"
#include "core/session/BrowserItem.h"

namespace mirvel {

class Busy;
class Clock;
class Console;
class Launchd;
class Selection;
struct Foundation;
struct Shell;

/// A row of a table in the editor: a check box, if the table has one, and the text of each column.
struct TableRow {
  bool isOn = false;
  std::vector<std::string> cells = {};
  /// The cells as they were read from the record; empty for a row that was added. As long as they are the same, the row
  /// is written even if it is empty.
  std::vector<std::string> recorded = {};

  /// Whether they look the same.
  bool operator==(const TableRow& other) const { return isOn == other.isOn && cells == other.cells; }
};

/// Input of the editor that can't be stored in a job file as it is, such as a number that isn't one. It stays in its
/// fields, while the record keeps the previous values, and is undone and redone together with the record.
struct Unfinished {
  std::vector<Scheduled::RuleRow> rules = {};                             ///< empty: the rules of the record are shown
  std::map<std::string, std::vector<TableRow>, std::less<>> tables = {};  ///< by key; absent: the rows of the record
  std::map<std::string, std::string, std::less<>> texts = {};             ///< by key of single fields, likewise

  std::map<std::string, std::vector<BrowserItem>, std::less<>> trees = {};  ///< by key of nested dictionaries, likewise

  bool isEmpty() const { return rules.empty() && tables.empty() && texts.empty() && trees.empty(); }
};

/// Owns the unsaved edits of the selected job, and the steps to undo and redo. Every change of the job's record begins
/// here. Also keeps track of the content of the job's file, so that a save detects changes made by other programs. For
/// the main thread.
class Editing {
 public:
  /// Whether an edit is an undo step of its own, or can be joined with the previous edit of the same field, as in
  /// typing.
  enum class Step { Begins, Continues };

  /// All references must outlive this object.
  Editing(const Selection& selection, Shell& shell, const Busy& saving, const Foundation& foundation,
          const Clock& clock, Console& console);

  /// Whether the selected job has changes that haven't been saved.
  bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
  /// Posts `edited` if the state changes. The undo steps are kept.
  void setUnsavedChanges(bool hasUnsavedChanges);
  /// Posted at each edit, undo and redo, and when the changes have been saved or discarded. At an edit it is posted
  /// before the caller changes the record.
  Signal<>& edited() { return m_edited; }
  /// Posted when undo has returned to the job as it was read. Scans that were held back can be made now.
  Signal<>& reverted() { return m_reverted; }

  /// Begins an edit: saves the state of the selected launchd job as an undo step, marks it as changed, and returns it
  /// for the caller to change. With `Step::Continues` the edit joins the last step if that was in the same field, less
  /// than two seconds ago, and also continued. At most 1000 steps are kept. Returns null, and does nothing, if no
  /// launchd job is selected.
  Launchd* markJobChanged(Step step = Step::Begins, std::string_view field = {});
  /// Replaces the whole record of the selected job by that of a job file with this text, including its unknown keys, as
  /// one undo step. The kind of the job doesn't change. Fails like `Plist::readTolerantly`, and with `NotFound` if no
  /// launchd job is selected.
  Result<void> replaceRecord(const std::string& text);

  /// The unfinished input for the selected job. Call `markJobChanged` before changing it.
  Unfinished& unfinished();

  /// Whether there is a step to undo or redo. False while a save runs.
  bool canUndo() const;
  bool canRedo() const;
  /// Undoes or redoes one step and refreshes the editor. Once all steps are undone, the job counts as unchanged.
  void undo();
  void redo();
  /// Discards all steps and unfinished input, when the editor is closed.
  void reset();

  // The content of the job's file. Checksums are those of `Checksum`.

  /// The checksum of the content from which the selected job was read; empty if unknown.
  std::string fileChecksum() const;
  /// Whether this content of the selected job's file is expected, rather than written by another program: it is what
  /// the job was read from, what the user has been informed about, or what a save has sent. True if the content from
  /// which the job was read is unknown.
  bool expectsInFile(const std::string& checksum) const;
  /// Records that the user has been informed about new content of the selected job's file.
  void setFileChecksum(std::string checksum);
  /// Records the content that a save sends to the helper. Even if the save fails, it may have been written.
  void sent(const std::shared_ptr<Launchd>& job, const std::string& text);
  /// Replaces the job's record by that of the text which a save has written, ahead of the next scan. Returns false, and
  /// changes nothing, if the text isn't a job file.
  bool take(const std::shared_ptr<Launchd>& job, const std::string& text);
  /// Replaces the job's record by a copy of the one before the first step, if there is one.
  void restore(const std::shared_ptr<Launchd>& job);
  /// Records that the user has agreed that saving loses parts of this content, such as comments. Discarded with
  /// the steps.
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
  std::weak_ptr<Launchd> m_job;  ///< the job to which the steps belong
  std::string m_fileChecksum;
  std::string m_sentChecksum;
  std::string m_agreedChecksum;
  std::weak_ptr<Launchd> m_writtenJob;  ///< the job that the last save has written
  std::string m_writtenChecksum;
  bool m_hasUnsavedChanges = false;
  bool m_wasChanged = false;  ///< whether there were unsaved changes before the first step
  Unfinished m_unfinished;
  std::vector<State> m_done;
  std::vector<State> m_undone;
  std::string m_field;  ///< the field of the last step; empty if the step can't be continued
  double m_lastChange = 0;
};

}  // namespace mirvel
