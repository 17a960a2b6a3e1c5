#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/ports/Interface.h"
#include "core/propertylist/Value.h"
#include "core/session/DetailType.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class ActionController;
class Busy;
class Editing;
class Launchd;
class Localize;

/// The buttons below the sections of the editor.
struct EditButtons {
  bool isBusy = false;       ///< saving or scanning: a progress indicator replaces the help button
  bool isSaving = false;     ///< sections and discard button are disabled, as later input would be in no file
  bool canSave = false;      ///< the save button is enabled
  std::string discardTitle;  ///< "Done" without unsaved changes, localized

  bool operator==(const EditButtons&) const = default;
};

/// Which version to keep of a job whose file another program changed while it was edited. `Neither` changes nothing and
/// leaves the question open until the next save.
enum class VersionChoice { Neither, Mine, Theirs };

/// The edited job and its file on disk, both as the text of a job file.
struct Versions {
  std::string mine;
  std::string theirs;
};

/// The view of the editor controller. Its methods may be called before the view is shown.
class EditStackType {
 public:
  EditStackType() = default;
  virtual ~EditStackType() = default;
  EditStackType(const EditStackType&) = delete;
  EditStackType& operator=(const EditStackType&) = delete;

  /// Called whenever a part of the state may have changed.
  virtual void showButtons(const EditButtons& buttons) = 0;
  /// Hides the discard button until the editor is shown again.
  virtual void hideDiscardButton() = 0;
  /// Commits the text that is being typed.
  virtual void endEditing() = 0;
  /// Focuses on the first field that can't be saved, and returns the reason; null if all can be saved.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }
  /// Shows both versions in a sheet, asks which one to keep, and calls `completion` once.
  virtual void compare(const Versions& versions, std::function<void(VersionChoice)> completion) = 0;
};

/// The state and the actions of the editor's buttons. Main thread only.
class EditController final : public EditType {
 public:
  /// Is `shell.edit` during its lifetime. All arguments outlive it.
  EditController(const SessionContext& session, const Busy& saving, const Busy& scanning, ActionController& actions,
                 EditStackType& stack);
  ~EditController() override;

  void updateButtons() override;
  void refreshEditedState() override;
  void endEditing() override { m_stack.endEditing(); }
  std::optional<InvalidField> refuse() override;
  /// Saves the selected job, unless a save is in progress. Instead shows an error if the job can't be edited or a field
  /// is invalid, and asks which version to keep if another program has changed the file.
  void save(std::function<void(bool isSaved)> ended) override;
  using EditType::save;
  /// Discards the unsaved changes and leaves the editor. Reads the job's file again if the record has been changed.
  void discardEdits() override;
  /// Marks the job as unchanged.
  void saveCompleted() override;
  /// Opens the help page about the settings of a job.
  void help();

 private:
  void reread();
  void takeFile(const std::shared_ptr<Launchd>& job);
  /// The question about two versions of a job, asked by a save.
  struct Conflict {
    std::shared_ptr<Launchd> job;
    std::string theirs;
    std::function<void(bool isSaved)> ended;  ///< not empty
  };
  void askAboutConflict(const Conflict& conflict);
  void resolveConflict(const Conflict& conflict, VersionChoice choice);

  const SessionContext m_session;
  const Busy& m_saving;
  const Busy& m_scanning;
  ActionController& m_actions;
  EditStackType& m_stack;
};

/// Replaces the contents of the selected job as one edit; see `Editing::replaceRecord`. Shows an error and returns
/// false if no launchd job is selected, or if the dictionary isn't a valid job file.
bool replaceSelected(Editing& editing, Interface& interface, const Localize& localize,
                     const propertylist::Dictionary& dictionary);

}  // namespace mirvel
