#pragma once

#include <QAbstractItemView>
#include <functional>
#include <vector>

#include "ui/mainwindow/GridHeader.h"
#include "ui/mainwindow/GridLayout.h"

namespace mirvel::ui {

/// The view of grid mode: the rows of a model as icons, in groups under headers that stay on top while their group is
/// in sight. Only what is in sight is ever asked for.
class GridView final : public QAbstractItemView {
 public:
  explicit GridView(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;
  /// The groups of the rows that the model will have with its next reset.
  void setGroups(std::vector<GridGroup> groups);
  const std::vector<GridGroup>& groups() const { return m_groups; }
  const GridLayout& grid() const { return m_layout; }

  /// What stands behind a view without items; an empty text: nothing.
  std::function<QString()> emptyLabel;
  /// The user marked an item.
  std::function<void(int row)> selectionDidChange;
  /// The user clicked the marked item.
  std::function<void(int row)> markedItemWasClicked;

  /// Does what a click on the item does.
  void click(int row);
  /// Marks just this item, or none with -1, without `selectionDidChange`.
  void mark(int row);

  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  QModelIndex indexAt(const QPoint& point) const override;
  /// Goes on from the marked item through all groups.
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
  int m_column = -1;  ///< which the user keeps while moving up and down; -1: that of the item
  bool m_isMarking = false;
};

}  // namespace mirvel::ui
