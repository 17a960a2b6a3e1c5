#pragma once

#include <QListView>
#include <functional>
#include <optional>
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
  struct Rows {
    std::size_t count = 0;
    std::vector<std::size_t> groups = {};           ///< the headers
    std::optional<std::size_t> now = std::nullopt;  ///< the header to which `showNow` scrolls
  };
  /// Sets the rows after a change of the model. The scroll position is restored by `place` if there is one.
  void setRows(Rows rows);

  /// Where a row is shown, to keep it there while rows change.
  struct Place {
    int row = 0;
    int top = 0;  ///< of the row, in pixels from the top of the viewport
  };
  /// The header Now if it is in view, else the first visible row that isn't a header; none without rows.
  std::optional<Place> anchor() const;
  /// Where that row is shown. Ends `showNow`.
  std::optional<Place> placeOf(int row);
  /// Scrolls a row to a place, as far as possible. While `showNow` is in effect, scrolls to Now instead.
  void put(const Place& place);
  /// Scrolls to the header Now, with a part of the past above it, and again after each change of rows or size, until
  /// the user scrolls or selects something.
  void showNow();
  /// Runs a change of rows without reporting changes of the selection that follow from it.
  void quietly(const std::function<void()>& change);

  /// The text shown instead of rows while there are none; nothing is shown if it is empty.
  std::function<QString()> emptyLabel;
  /// Whether the user may change the selection now.
  std::function<bool()> selectionMayChange;
  /// Called when the user has selected a row.
  std::function<void(int row)> selectionDidChange;
  /// Whether a point of the viewport is on the triangle that folds and unfolds this row.
  std::function<bool(const QModelIndex& index, const QPoint& point)> isFoldingPoint;
  /// Called to unfold or to fold a row, or, without a value, to do the opposite of before. Returns whether that had an
  /// effect.
  std::function<bool(int row, std::optional<bool> isOpen)> fold;
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
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
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
  void scrollToNow();
  int pinnedGroup() const;
  QRect pinnedRect() const;
  QRect rectOf(int row) const;
  int rowAfter(int row, CursorAction action) const;
  int rowAPageAway(int row, int direction) const;
  void drawRow(QPainter& painter, int row, const QRect& rect);
  TimelineLayout::Heights heights() const;

  TimelineLayout m_layout;
  std::optional<int> m_now;
  bool m_showsNow = false;
  bool m_isPlacing = false;  // the view scrolls, not the user
  bool m_isMarking = false;
};

}  // namespace mirvel::ui
