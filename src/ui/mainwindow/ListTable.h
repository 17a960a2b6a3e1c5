#pragma once

#include <QTreeView>
#include <functional>
#include <optional>
#include <vector>

#include "core/mainwindow/ListLayout.h"

namespace mirvel::ui {

/// The table of list mode: a view with a label behind it while it is empty, and columns that can be hidden and fitted.
class ListTable final : public QTreeView {
 public:
  explicit ListTable(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;
  /// Shows the row; the place to the side stays.
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  /// Looks for the letters in the names, whichever column was clicked.
  void keyboardSearch(const QString& search) override;

  /// What stands behind a table without rows; an empty text: nothing.
  std::function<QString()> emptyLabel;
  /// Whether the user may change the selection now.
  std::function<bool()> selectionMayChange;
  /// The user marked a row.
  std::function<void(int row)> selectionDidChange;

  /// Marks just this row, or none with -1, whatever `selectionMayChange` says and without `selectionDidChange`.
  void mark(int row);

  std::vector<Column::List> visibleColumns() const;
  void setVisibleColumns(const std::vector<Column::List>& columns);
  /// The columns as they stand from the left, without the width of the last, which takes what room there is.
  std::vector<ListPlace> places() const;
  /// Columns without a width keep theirs.
  void setPlaces(const std::vector<ListPlace>& places);
  /// As wide as its header and its widest cell.
  void rightSize(int column);
  void rightSizeAll();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;

 private:
  int widestCell(int column) const;
  int firstVisibleColumn() const;

  bool m_isMarking = false;
};

}  // namespace mirvel::ui
