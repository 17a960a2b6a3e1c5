#pragma once

#include "core/creation/ImportController.h"
#include "ui/creation/CopySheet.h"

class QLabel;

namespace mirvel {
class Program;
}  // namespace mirvel

namespace mirvel::ui {

class KindButtons;

/// The sheet that imports job files, one after the other.
class ImportViewController final : public CopySheet {
  Q_OBJECT

 public:
  /// Takes over the files that are to be imported. The program outlives it.
  ImportViewController(Program& program, QWidget& window);

 private:
  void importFile();
  void skip();
  void updateInterface();

  ImportController m_controller;
  ElidedLabel* const m_importTextField;
  QLabel* const m_kindTextField;
  KindButtons* const m_kindButtons;
  QPushButton* const m_skipButton;
  QPushButton* const m_cancelButton;
  QPushButton* const m_importButton;
};

}  // namespace mirvel::ui
