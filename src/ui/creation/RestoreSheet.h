#pragma once

#include "ui/support/SheetViewController.h"

class QPushButton;
class QTreeWidget;

namespace mirvel {
class Program;
}

namespace mirvel::ui {

/// The sheet with the deleted jobs, of which one can be restored.
class RestoreSheet final : public SheetViewController {
  Q_OBJECT

 public:
  /// The window owns it, the program outlives it.
  RestoreSheet(Program& program, QWidget& window);

 private:
  void makeList();
  void fill();
  void restore();

  Program& m_program;
  QTreeWidget* const m_list;
  QPushButton* const m_restoreButton;
};

}  // namespace mirvel::ui
