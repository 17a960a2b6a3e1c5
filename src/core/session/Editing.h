#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/catalogue/Kind.h"
#include "core/jobfile/Plist.h"
#include "core/session/Unfinished.h"

namespace mirvel {

class Launchd;
class Program;

/// The way from a control of the editor to the live record of the selected job, and back again by undo. For the main
/// thread.
class Editing {
 public:
  explicit Editing(Program& program) : m_program(program) {}

  /// Whether the selected job was edited and not saved since.
  bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
  void setUnsavedChanges(bool hasUnsavedChanges) { m_hasUnsavedChanges = hasUnsavedChanges; }

  /// The selected launchd job, marked as changed: what the caller does to it next is a step of undo. Null: none is
  /// selected, and nothing has happened. Of one field that is named, what follows shortly upon another change of it is
  /// part of the same step.
  Launchd* markJobChanged(std::string_view field = {});

  /// What is entered for the selected job without being in its record. To be changed after `markJobChanged` only.
  Unfinished& unfinished();

  bool canUndo() const;
  bool canRedo() const;
  /// Brings the record back to before the last step, and has the editor show it. Without a step left the job is as it
  /// was read, and not changed: the scan that the edits held back is made.
  void undo();
  void redo();
  /// Forgets the steps: the editor is left.
  void reset();

  /// The selected job took the place of one that was read from its file, with this checksum.
  void began(const std::shared_ptr<Launchd>& job, std::string fileChecksum);
  /// What the job's file held when the job was read from it; empty if that isn't known.
  std::string fileChecksum() const;
  /// Whether the file of the selected job may hold what has that checksum: it was read from there, or the user knows of
  /// it, or sent it there. True too if it isn't known what was read.
  bool expectsInFile(const std::string& checksum) const;
  /// The user knows that the file of the selected job holds something else by now.
  void setFileChecksum(std::string checksum);
  /// The job is on its way to its file. A save that fails may have written it.
  void sent(const std::shared_ptr<Launchd>& job, const std::string& text);
  /// The job becomes what its file holds by now, before a scan has read it: what is edited until then begins with that.
  /// False: that is no job, and nothing has changed.
  bool take(const std::shared_ptr<Launchd>& job, const std::string& text);
  /// The user agreed that a save loses something of what has that checksum. Forgotten with the steps.
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
  std::string checksumAtStart(const std::shared_ptr<Launchd>& job) const;
  std::string checksumLastSeen(const std::shared_ptr<Launchd>& job) const;
  void dropOldSteps();
  bool continuesStep(std::string_view field);
  void swap(std::vector<State>& from, std::vector<State>& to);

  Program& m_program;
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
  std::string m_field;  ///< of the last step
  double m_lastChange = 0;
};

}  // namespace mirvel
