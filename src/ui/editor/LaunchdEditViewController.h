#pragma once

#include <optional>

#include "core/editor/EditController.h"
#include "ui/editor/FocusPlace.h"
#include "ui/editor/LaunchdViewController.h"
#include "ui/support/IconLoader.h"

class QProgressBar;
class QPushButton;
class QToolButton;

namespace mirvel::ui {

/// A launchd job to be edited: each keystroke goes to its record, and to its file when it is saved.
class LaunchdEditViewController final : public LaunchdViewController, private EditStackType {
 public:
  LaunchdEditViewController(Program& program, IconLoader& icons);
  ~LaunchdEditViewController() override;

  /// Shows the selected job anew. The field with the focus keeps it.
  void updateDetail();
  /// Shows another icon, and nothing else anew: something may be typed right now.
  void updateIcon();
  /// Gives the keys to the field with the name.
  void focusOnFirst();
  /// Lets go of the job.
  void clearDetail() { dropSections(); }
  /// Whether the changes of a widget are undone here and not by itself.
  bool undoesFor(const QWidget& widget) const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  std::vector<StackEntry> entries(const Launchd& launchd) const override;
  Section* makeSection(StackSection section) override;
  Section* makeReadOnlySection(StackSection section) const;
  void showButtons(const EditButtons& buttons) override;
  void hideDiscardButton() override;
  void endEditing() override;
  std::optional<InvalidField> refuse() override;
  void compare(const Versions& versions, std::function<void(Choice)> completion) override;
  void makeButtons();
  void holdSections(bool isHeld);

  IconLoader& m_icons;
  EditController m_controller;
  QPushButton* m_saveButton = nullptr;
  QPushButton* m_discardButton = nullptr;
  QToolButton* m_helpButton = nullptr;
  QProgressBar* m_saveProgressIndicator = nullptr;
  std::optional<FocusPlace> m_heldPlace;  ///< while the sections are held
};

}  // namespace mirvel::ui
