#pragma once

#include <QListView>
#include <functional>
#include <vector>

#include "ui/mainwindow/TimelineLayout.h"

namespace mirvel::ui {

/// A list under headers, where the header of the first visible row stays on top. The layout of a standard view doesn't
/// serve: with headers higher than rows, QListView measures every one of what can be tens of thousands of rows, and it
/// has no pinned headers. The layout here is computed (see `TimelineLayout`). The base class is still QListView,
/// because Qt exposes one to screen readers as a list.
class TimelineTable final : public QListView {
 public:
  explicit TimelineTable(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;
  /// Sets the number of rows after the model's last reset, and which of them are headers.
  void setRows(std::size_t count, std::vector<std::size_t> groups);

  /// The text shown instead of rows while there are none; nothing is shown if it is empty.
  std::function<QString()> emptyLabel;
  /// Whether the user may change the selection now.
  std::function<bool()> selectionMayChange;
  /// Called when the user has selected a row.
  std::function<void(int row)> selectionDidChange;
  /// Called when the font or the style has changed.
  std::function<void()> appearanceDidChange;

  /// Selects this row alone, or none with -1, without asking `selectionMayChange` or calling `selectionDidChange`.
  void mark(int row);

  QRect visualRect(const QModelIndex& index) const override;
  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
  /// Where the pinned header is drawn, returns that header, not the row below it.
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
  bool m_isMarking = false;
};

}  // namespace mirvel::ui
