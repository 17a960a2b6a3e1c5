#pragma once

#include <QAbstractItemView>
#include <functional>
#include <vector>

#include "ui/mainwindow/GridHeader.h"
#include "ui/mainwindow/GridLayout.h"

namespace mirvel::ui {

/// The view of grid mode: the rows of a model as icons in groups, under headers that stay on top while their group is
/// visible. No standard item view serves: the icon mode of QListView has no groups and no pinned headers, and lays out
/// every item, while this view asks the model and the delegate for visible items only.
class GridView final : public QAbstractItemView {
 public:
  explicit GridView(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;
  /// Sets the groups of the rows that the model will have after its next reset.
  void setGroups(std::vector<GridGroup> groups);
  const std::vector<GridGroup>& groups() const { return m_groups; }
  const GridLayout& grid() const { return m_layout; }

  /// The text shown instead of items while there are none; nothing is shown if it is empty.
  std::function<QString()> emptyLabel;
  /// Called when the user has selected an item.
  std::function<void(int row)> selectionDidChange;
  /// Called when the user clicks the item that is already selected.
  std::function<void(int row)> markedItemWasClicked;

  /// Has the effect of a click on the item.
  void click(int row);
  /// Selects this item alone, or none with -1, without calling `selectionDidChange`.
  void mark(int row);

  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  QModelIndex indexAt(const QPoint& point) const override;
  /// Searches from the selected item on, across groups.
  void keyboardSearch(const QString& search) override;

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  int horizontalOffset() const override { return 0; }
  int verticalOffset() const override;
  bool isIndexHidden(const QModelIndex&) const override { return false; }
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
  void updateGeometries() override;
  void scrollContentsBy(int dx, int dy) override;
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void measure();
  void reflow();
  int anchor() const;
  int target(int row, CursorAction action);
  int page(int row, bool isDown) const;
  void drawItems(QPainter& painter, const QRect& dirty);
  void drawHeaders(QPainter& painter);

  std::vector<GridGroup> m_groups;
  GridLayout m_layout;
  int m_column = -1;  ///< column kept while moving up and down; -1: the current item's own
  bool m_isMarking = false;
};

/// Makes every `GridView` accessible as a list of its items. Further calls have no effect. Defined in
/// GridAccessible.cpp.
void installGridAccessible();

}  // namespace mirvel::ui
