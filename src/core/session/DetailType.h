#pragma once

#include <functional>
#include <optional>

#include "core/ports/Interface.h"

namespace mirvel {

/// The content of the details pane. The values are the indexes of its tabs.
enum class DetailTab : int {
  NoSelection = 0,
  LaunchdDisplay = 1,
  LaunchdEdit = 2,
  LoginItem = 3,
  StartupItem = 4,
  PrivilegedHelperTool = 5,
};

/// The pane with the details of the selected job. Implemented by the shell; for the main thread.
class DetailType {
 public:
  DetailType() = default;
  virtual ~DetailType() = default;
  DetailType(const DetailType&) = delete;
  DetailType& operator=(const DetailType&) = delete;

  /// Shows the selected job, or a placeholder if none is selected.
  virtual void updateDetail() = 0;
  /// Shows the placeholder, whatever is selected.
  virtual void clearDetail() = 0;
  /// Redraws the icon of the selected job.
  virtual void updateIcon() = 0;
  virtual DetailTab detailTab() const = 0;
  /// Replaces the editor by the read-only view.
  virtual void showDisplay() = 0;
  /// Opens the selected job in the editor, or refreshes the editor if it is open.
  virtual void showEdit() = 0;
};

/// The details pane while a job is edited. Implemented by the shell; for the main thread.
class EditType {
 public:
  EditType() = default;
  virtual ~EditType() = default;
  EditType(const EditType&) = delete;
  EditType& operator=(const EditType&) = delete;

  /// Enables or disables the buttons, depending on whether a scan or save is running.
  virtual void updateButtons() = 0;
  /// Shows whether there are unsaved changes.
  virtual void refreshEditedState() = 0;
  /// Commits the field that has the focus.
  virtual void endEditing() {}
  /// Commits the field that has the focus. If some input can't be saved, gives the focus to the first such field, and
  /// returns why; null otherwise.
  virtual std::optional<InvalidField> refuse() { return std::nullopt; }
  /// Commits the field that has the focus, and saves the job. `ended` is called once with whether the job was saved,
  /// possibly before this function returns; it may be empty.
  virtual void save(std::function<void(bool isSaved)> ended) = 0;
  void save() { save({}); }
  /// Discards the unsaved changes.
  virtual void discardEdits() = 0;
  /// Called when the changes have been saved or discarded.
  virtual void saveCompleted() = 0;
};

}  // namespace mirvel
