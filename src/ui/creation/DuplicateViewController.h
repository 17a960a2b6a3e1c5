#pragma once

#include "core/creation/DuplicateController.h"
#include "ui/creation/CopySheet.h"

class QLabel;
class QLineEdit;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

/// The sheet that copies the selected job under another name.
class DuplicateViewController final : public CopySheet {
  Q_OBJECT

 public:
  /// The program outlives it.
  DuplicateViewController(Program& program, QWidget& window);

 private:
  void save();
  void selectName();

  DuplicateController m_controller;
  ElidedLabel* const m_duplicateTextField;
  QLabel* const m_nameTitleTextField;
  QLineEdit* const m_nameValueTextField;
  QPushButton* const m_cancelButton;
  QPushButton* const m_saveButton;
};

}  // namespace mirvel::ui
