#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/ports/InvalidField.h"
#include "core/session/DetailType.h"

namespace mirvel {

class Launchd;
class Program;

/// The buttons below the sections of the editor.
struct EditButtons {
  bool isBusy = false;    ///< the progress shows in the place of the help
  bool isSaving = false;  ///< nothing can be edited or discarded: what is typed now would be in no file
  bool canSave = false;
  std::string discardTitle;

  bool operator==(const EditButtons&) const = default;
};

/// What becomes of a job whose file another program changed while it was edited.
enum class Choice { Neither, Mine, Theirs };

/// The job as the user edited it and as its file is now, both as the text of a job file.
struct Versions {
  std::string mine;
  std::string theirs;
};

/// What shows the editor.
class EditStackType {
 public:
  EditStackType() = default;
  virtual ~EditStackType() = default;
  EditStackType(const EditStackType&) = delete;
  EditStackType& operator=(const EditStackType&) = delete;

  virtual void showButtons(const EditButtons& buttons) = 0;
  /// Hides the button that discards, until the editor is shown again.
  virtual void hideDiscardButton() = 0;
  /// Takes over what is being typed.
  virtual void endEditing() = 0;
  /// The field that keeps the job from being saved, which then gets the keys. None: all can be saved.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }
  /// Shows both versions in a sheet, and asks which is to be the job's.
  virtual void compare(const Versions& versions, std::function<void(Choice)> completion) = 0;
};

/// What the editor's buttons do, and what they show. For the main thread.
class EditController final : public EditType {
 public:
  /// Is the program's editor for as long as it lives. Both outlive it.
  EditController(Program& program, EditStackType& stack);
  ~EditController() override;

  void updateButtons() override;
  void refreshEditedState() override;
  void endEditing() override { m_stack.endEditing(); }
  /// Saves the selected job, unless a field holds what can't be saved: the user is told which one. If something else
  /// changed its file meanwhile the user is asked first.
  void save() override;
  void discardEdits() override;
  void saveCompleted() override;
  /// Opens the page about the settings of a job.
  void help();

 private:
  void readAnew();
  void takeFile(const std::shared_ptr<Launchd>& job);
  void askAboutConflict(const std::shared_ptr<Launchd>& job, const std::string& theirs);
  void resolveConflict(const std::shared_ptr<Launchd>& job, const std::string& theirs, Choice choice);

  Program& m_program;
  EditStackType& m_stack;
};

}  // namespace mirvel
