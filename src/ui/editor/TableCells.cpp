#include "ui/editor/TableCells.h"

namespace mirvel::ui {

void TableCells::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const QModelIndex next = hint == QAbstractItemDelegate::EditNextItem       ? neighbour(1)
                           : hint == QAbstractItemDelegate::EditPreviousItem ? neighbour(-1)
                                                                             : QModelIndex();
  const bool isTab = hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem;
  QTableView::closeEditor(editor, isTab ? QAbstractItemDelegate::NoHint : hint);
  if (!next.isValid()) return;
  setCurrentIndex(next);
  edit(next);
}

QModelIndex TableCells::neighbour(int step) const {
  const int columns = model()->columnCount();
  for (int cell = currentIndex().row() * columns + currentIndex().column() + step;
       cell >= 0 && cell < model()->rowCount() * columns; cell += step) {
    const QModelIndex index = model()->index(cell / columns, cell % columns);
    if (index.flags().testFlag(Qt::ItemIsEditable)) return index;
  }
  return {};
}

}  // namespace mirvel::ui
