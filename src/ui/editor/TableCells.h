#pragma once

#include <QTableView>
#include <functional>

namespace mirvel::ui {

/// The cells of a table of the editor. Tab leaves it after the last cell, whereas Qt would continue with the first one,
/// and the commands of the menu copy and paste rows.
class TableCells final : public QTableView {
  Q_OBJECT

 public:
  TableCells() = default;

  // Required.
  std::function<void()> copyRow;
  std::function<void()> pasteRows;

  Q_SLOT void copy() { copyRow(); }
  Q_SLOT void paste() { pasteRows(); }

 protected:
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  QModelIndex neighbour(int step) const;
};

}  // namespace mirvel::ui
