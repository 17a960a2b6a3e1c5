#pragma once

#include <optional>

#include "core/editor/EditController.h"
#include "ui/editor/FocusPlace.h"
#include "ui/editor/LaunchdViewController.h"

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;

namespace mirvel::ui {

class RunsLine;

/// The editor of a launchd job. Writes each keystroke to the job's record; saving writes the record to the file.
class LaunchdEditViewController final : public LaunchdViewController, private EditStackType {
 public:
  explicit LaunchdEditViewController(const EditorContext& context);
  ~LaunchdEditViewController() override;

  /// Shows the selected job. Focus, cursors and selected rows are kept unless another job was shown before.
  void updateDetail();
  /// Updates only the icon.
  void updateIcon();
  /// Focuses on the field with the name.
  void focusOnFirst();
  /// Removes the sections.
  void clearDetail();
  /// Whether Undo, while the widget has the focus, takes back an edit of the job instead of typing in the widget.
  bool undoesFor(const QWidget& widget) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  std::vector<StackEntry> entries(const Launchd& launchd) const override;
  Section* makeSection(StackSection section) override;
  void showButtons(const EditButtons& buttons) override;
  void hideDiscardButton() override;
  void endEditing() override;
  std::optional<InvalidField> refuse() override;
  void compare(const Versions& versions, std::function<void(VersionChoice)> completion) override;
  void makeSearch();
  void search();
  void showProblems();
  void makeButtons();
  void holdSections(bool isHeld);

  EditController m_controller;
  QLineEdit* m_searchField = nullptr;
  QLabel* m_nothingFound = nullptr;
  ProblemsView* m_jobProblems = nullptr;  ///< those that no field shows
  Subscription m_problemsChanged;
  RunsLine* m_runs = nullptr;
  Subscription m_runsChanged;
  QPushButton* m_saveButton = nullptr;
  QPushButton* m_discardButton = nullptr;
  QToolButton* m_helpButton = nullptr;
  QProgressBar* m_saveProgressIndicator = nullptr;
  std::optional<FocusPlace> m_heldPlace;  ///< the focus to be restored after a save
};

}  // namespace mirvel::ui
