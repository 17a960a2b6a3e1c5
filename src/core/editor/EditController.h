#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/ports/Interface.h"
#include "core/session/DetailType.h"

namespace mirvel {

class ActionController;
class Editing;
class Fetcher;
class Launchd;
class Selection;
class Busy;
struct Foundation;
struct Platform;
struct Shell;

/// The buttons below the sections of the editor.
struct EditButtons {
  bool isBusy = false;    ///< the progress shows in the place of the help
  bool isSaving = false;  ///< nothing can be edited or discarded: what is typed now would be in no file
  bool canSave = false;
  std::string discardTitle;

  bool operator==(const EditButtons&) const = default;
};

/// The answer for a job whose file another program changed while it was edited.
enum class Choice { Neither, Mine, Theirs };

/// The edited job and its file as it is now, both as the text of a job file.
struct Versions {
  std::string mine;
  std::string theirs;
};

/// The view of the editor.
class EditStackType {
 public:
  EditStackType() = default;
  virtual ~EditStackType() = default;
  EditStackType(const EditStackType&) = delete;
  EditStackType& operator=(const EditStackType&) = delete;

  virtual void showButtons(const EditButtons& buttons) = 0;
  /// Hides the button that discards, until the editor is shown again.
  virtual void hideDiscardButton() = 0;
  /// Commits the text that is being typed.
  virtual void endEditing() = 0;
  /// Focuses on the first field that can't be saved, and returns why. None: all can be saved.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }
  /// Shows both versions in a sheet and asks which one to keep.
  virtual void compare(const Versions& versions, std::function<void(Choice)> completion) = 0;
};

/// The editor's buttons: their state and their actions. For the main thread.
class EditController final : public EditType {
 public:
  /// Registers itself in the shell for as long as it lives. All outlive it.
  EditController(const Foundation& foundation, const Platform& platform, Shell& shell, const Busy& saving,
                 const Busy& scanning, const Selection& selection, Editing& editing, ActionController& actions,
                 Fetcher& fetcher, EditStackType& stack);
  ~EditController() override;

  void updateButtons() override;
  void refreshEditedState() override;
  void endEditing() override { m_stack.endEditing(); }
  /// Saves the selected job. Refuses, naming the field, if one isn't valid; asks first if another program has changed
  /// the file.
  void save() override;
  void discardEdits() override;
  void saveCompleted() override;
  /// Opens the page about the settings of a job.
  void help();

 private:
  void reread();
  void takeFile(const std::shared_ptr<Launchd>& job);
  void askAboutConflict(const std::shared_ptr<Launchd>& job, const std::string& theirs);
  void resolveConflict(const std::shared_ptr<Launchd>& job, const std::string& theirs, Choice choice);

  const Foundation& m_foundation;
  const Platform& m_platform;
  Shell& m_shell;
  const Busy& m_saving;
  const Busy& m_scanning;
  const Selection& m_selection;
  Editing& m_editing;
  ActionController& m_actions;
  Fetcher& m_fetcher;
  EditStackType& m_stack;
};

}  // namespace mirvel
