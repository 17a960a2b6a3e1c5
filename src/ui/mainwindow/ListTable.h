#pragma once

#include <QTreeView>
#include <functional>
#include <vector>

#include "core/mainwindow/ListLayout.h"

namespace mirvel::ui {

/// The table of list mode: a tree view without levels, with a label while it is empty, and with columns that can be
/// hidden and fitted to their contents.
class ListTable final : public QTreeView {
 public:
  explicit ListTable(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;
  /// Scrolls vertically only.
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  /// Searches the name column, whichever column is current.
  void keyboardSearch(const QString& search) override;

  /// The text shown instead of rows while there are none; nothing is shown if it is empty.
  std::function<QString()> emptyLabel;
  /// Whether the user may change the selection now.
  std::function<bool()> selectionMayChange;
  /// Called when the user has selected a row.
  std::function<void(int row)> selectionDidChange;

  /// Selects this row alone, or none with -1, without asking `selectionMayChange` or calling `selectionDidChange`.
  void mark(int row);

  std::vector<ListColumn> visibleColumns() const;
  void setVisibleColumns(const std::vector<ListColumn>& columns);
  /// The columns in visual order. The last one has no width, since it fills the remaining space.
  std::vector<ListPlace> places() const;
  /// Restores the order, visibility and widths of columns. A column without a width keeps its current one.
  void setPlaces(const std::vector<ListPlace>& places);
  /// Resizes a column to the width of its header or its widest cell, whichever is wider.
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
