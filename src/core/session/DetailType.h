#pragma once

namespace mirvel {

/// What the detail pane shows. The number is that of the tab.
enum class DetailTab : int {
  noSelection = 0,
  launchdDisplay = 1,
  launchdEdit = 2,
  loginItem = 3,
  startupItem = 4,
  privilegedHelperTool = 5,
};

/// The pane with the details of the selected job.
class DetailType {
 public:
  DetailType() = default;
  virtual ~DetailType() = default;
  DetailType(const DetailType&) = delete;
  DetailType& operator=(const DetailType&) = delete;

  /// Shows the selected job, or that there is none.
  virtual void updateDetail() = 0;
  /// Drops what is shown, whatever is selected.
  virtual void clearDetail() = 0;
  /// Draws the icon of the selected job anew.
  virtual void updateIcon() = 0;
  virtual DetailTab detailTab() const = 0;
  /// Leaves the editor for what the job is.
  virtual void showDisplay() = 0;
  /// Has the selected job edited.
  virtual void showEdit() = 0;
};

/// The detail pane while a job is edited.
class EditType {
 public:
  EditType() = default;
  virtual ~EditType() = default;
  EditType(const EditType&) = delete;
  EditType& operator=(const EditType&) = delete;

  /// Enables the buttons by the program's state.
  virtual void updateButtons() = 0;
  /// Shows whether there are unsaved changes.
  virtual void refreshEditedState() = 0;
  /// Takes over what is being typed.
  virtual void endEditing() {}
  /// Takes over what is being typed, and saves the job.
  virtual void save() = 0;
  /// Goes back to what was read.
  virtual void discardEdits() = 0;
  /// The edits are saved, or are no longer to be.
  virtual void saveCompleted() = 0;
};

}  // namespace mirvel
