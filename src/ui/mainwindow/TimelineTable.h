#pragma once

#include <QListView>
#include <functional>
#include <vector>

#include "ui/mainwindow/TimelineLayout.h"

namespace mirvel::ui {

/// A list with headers, of which the one above the first row in sight stays on top. Rows are laid out by arithmetic, so
/// their number costs nothing. It is a QListView for the sake of screen readers, which are told of these as of lists,
/// and uses nothing of that class's own layout.
class TimelineTable final : public QListView {
 public:
  explicit TimelineTable(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;
  /// The rows that the model has since its last reset, and which of them are headers.
  void setRows(std::size_t count, std::vector<std::size_t> groups);

  /// What stands in a table without rows; an empty text: nothing.
  std::function<QString()> emptyLabel;
  /// Whether the user may change the selection now.
  std::function<bool()> selectionMayChange;
  /// The user marked a row.
  std::function<void(int row)> selectionDidChange;
  /// The font is another, or the style.
  std::function<void()> appearanceDidChange;

  /// Marks just this row, or none with -1, whatever `selectionMayChange` says and without `selectionDidChange`.
  void mark(int row);

  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  /// The header that stays on top counts where it is drawn.
  QModelIndex indexAt(const QPoint& point) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  void updateGeometries() override;
  void doItemsLayout() override;
  void scrollContentsBy(int dx, int dy) override;

  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  int horizontalOffset() const override { return 0; }
  int verticalOffset() const override;
  bool isIndexHidden(const QModelIndex&) const override { return false; }
  void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
  QRegion visualRegionForSelection(const QItemSelection& selection) const override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;

 private:
  bool isGroup(const QModelIndex& index) const { return index.isValid() && m_layout.isGroup(index.row()); }
  int pinnedGroup() const;
  QRect pinnedRect() const;
  QRect rectOf(int row) const;
  int rowAfter(int row, CursorAction action) const;
  int rowAPageAway(int row, int direction) const;
  void drawRow(QPainter& painter, int row, const QRect& rect);
  TimelineLayout::Heights heights() const;

  TimelineLayout m_layout;
  std::vector<std::size_t> m_groups;
  bool m_isMarking = false;
};

}  // namespace mirvel::ui
