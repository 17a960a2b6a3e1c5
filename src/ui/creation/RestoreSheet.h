#pragma once

#include "ui/support/SheetViewController.h"

class QPushButton;
class QTreeWidget;

namespace mirvel {
struct CreationContext;
}

namespace mirvel::ui {

/// The sheet that lists the deleted jobs and restores one of them.
class RestoreSheet final : public SheetViewController {
  Q_OBJECT

 public:
  /// The context must outlive the sheet.
  RestoreSheet(const CreationContext& context, QWidget& window);

 private:
  void makeList();
  void fill();
  void restore();

  const CreationContext& m_context;
  QTreeWidget* const m_list;
  QPushButton* const m_restoreButton;
};

}  // namespace mirvel::ui
