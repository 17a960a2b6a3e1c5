#include "ui/mainwindow/TimelineTable.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "ui/mainwindow/JobView.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {

TimelineTable::TimelineTable(QWidget* parent) : QListView(parent) {
  prepareJobView(*this);
  setSelectionBehavior(SelectRows);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void TimelineTable::setModel(QAbstractItemModel* model) {
  QListView::setModel(model);
  if (!model) return;
  guardSelection(
      *this, [this] { return m_isMarking || !selectionMayChange || selectionMayChange(); },
      [this](int row) {
        if (!m_isMarking && selectionDidChange) selectionDidChange(row);
      });
}

void TimelineTable::setRows(Rows rows) {
  m_layout = TimelineLayout(rows.count, std::move(rows.groups), heights());
  m_now = rows.now ? std::optional(static_cast<int>(*rows.now)) : std::nullopt;
  updateGeometries();
  scrollToNow();
  viewport()->update();
}

std::optional<TimelineTable::Place> TimelineTable::anchor() const {
  if (m_layout.count() == 0) return std::nullopt;
  if (m_now) {
    const QRect now = rectOf(*m_now);
    if (now.top() >= 0 && now.top() < viewport()->height()) return Place{*m_now, now.top()};
  }
  const int top = std::min(verticalOffset() + m_layout.groupHeight(), m_layout.height() - 1);
  const int row = m_layout.nearestOther(m_layout.rowAt(top), 1);
  return row < 0 ? std::nullopt : std::optional(Place{row, rectOf(row).top()});
}

std::optional<TimelineTable::Place> TimelineTable::placeOf(int row) {
  m_showsNow = false;
  return Place{row, rectOf(row).top()};
}

void TimelineTable::put(const Place& place) {
  if (!m_showsNow) verticalScrollBar()->setValue(m_layout.top(place.row) - place.top);
}

void TimelineTable::showNow() {
  m_showsNow = true;
  scrollToNow();
}

void TimelineTable::scrollToNow() {
  if (!m_showsNow) return;
  const int above = viewport()->height() / 3;
  m_isPlacing = true;
  verticalScrollBar()->setValue(m_now ? m_layout.top(*m_now) - above : 0);
  m_isPlacing = false;
}

void TimelineTable::quietly(const std::function<void()>& change) {
  m_isMarking = true;
  change();
  m_isMarking = false;
}

TimelineLayout::Heights TimelineTable::heights() const {
  // Row heights for a font of common size; a larger font increases them.
  constexpr int group = 30, other = 26;
  const int text = fontMetrics().height();
  return {.group = std::max(group, text * 7 / 4), .other = std::max(other, text * 3 / 2)};
}

void TimelineTable::mark(int row) {
  setAutoScroll(false);  // otherwise the view scrolls to the current row
  quietly([&] {
    if (row < 0) {
      selectionModel()->clear();
    } else {
      selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::ClearAndSelect);
    }
  });
  setAutoScroll(true);
}

int TimelineTable::verticalOffset() const {
  return verticalScrollBar()->value();
}

QRect TimelineTable::rectOf(int row) const {
  return {0, m_layout.top(row) - verticalOffset(), viewport()->width(), m_layout.height(row)};
}

QRect TimelineTable::visualRect(const QModelIndex& index) const {
  return index.isValid() && index.row() < m_layout.count() ? rectOf(index.row()) : QRect();
}

int TimelineTable::pinnedGroup() const {
  return m_layout.count() == 0 ? -1 : m_layout.groupOf(m_layout.rowAt(verticalOffset()));
}

/// The pinned header is pushed up by the next one.
QRect TimelineTable::pinnedRect() const {
  const int group = pinnedGroup();
  if (group < 0) return {};
  const int next = m_layout.top(m_layout.nextGroup(group)) - verticalOffset();
  const int height = m_layout.groupHeight();
  return {0, std::min(0, next - height), viewport()->width(), height};
}

QModelIndex TimelineTable::indexAt(const QPoint& point) const {
  const int y = point.y() + verticalOffset();
  if (!model() || point.x() < 0 || point.x() >= viewport()->width() || y < 0 || y >= m_layout.height()) return {};
  return model()->index(pinnedRect().contains(point) ? pinnedGroup() : m_layout.rowAt(y), 0);
}

void TimelineTable::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!index.isValid() || index.row() >= m_layout.count()) return;
  m_showsNow = false;
  const int covered = isGroup(index) ? 0 : m_layout.groupHeight();
  const int least = m_layout.top(index.row() + 1) - viewport()->height();  // row at the bottom of the viewport
  const int greatest = m_layout.top(index.row()) - covered;                // row just below the pinned header
  int offset = verticalOffset();
  if (hint == PositionAtTop) offset = greatest;
  if (hint == PositionAtBottom) offset = least;
  if (hint == PositionAtCenter) offset = (least + greatest) / 2;
  verticalScrollBar()->setValue(std::min(std::max(offset, least), greatest));
}

void TimelineTable::updateGeometries() {
  const int page = viewport()->height();
  m_isPlacing = true;  // a smaller range can scroll
  verticalScrollBar()->setRange(0, std::max(0, m_layout.height() - page));
  m_isPlacing = false;
  verticalScrollBar()->setPageStep(std::max(1, page - m_layout.groupHeight()));
  verticalScrollBar()->setSingleStep(heights().other);
  QAbstractItemView::updateGeometries();  // NOLINT(bugprone-parent-virtual-call): the list's own lays out all rows
}

void TimelineTable::doItemsLayout() {
  QAbstractItemView::doItemsLayout();  // NOLINT(bugprone-parent-virtual-call): likewise
}

void TimelineTable::scrollContentsBy(int, int) {
  if (!m_isPlacing) m_showsNow = false;
  viewport()->update();  // a full repaint, since the pinned header doesn't scroll
}

int TimelineTable::rowAPageAway(int row, int direction) const {
  const int place = m_layout.top(row) + direction * verticalScrollBar()->pageStep();
  const int there = m_layout.rowAt(std::clamp(place, 0, m_layout.height() - 1));
  const int found = m_layout.nearestOther(there, direction);
  return found >= 0 ? found : m_layout.nearestOther(there, -direction);
}

int TimelineTable::rowAfter(int row, CursorAction action) const {
  switch (action) {
    case MoveHome:
      return m_layout.nearestOther(0, 1);
    case MoveEnd:
      return m_layout.nearestOther(m_layout.count() - 1, -1);
    case MoveUp:
    case MovePrevious:
      return m_layout.nearestOther(row - 1, -1);
    case MoveDown:
    case MoveNext:
      return m_layout.nearestOther(row + 1, 1);
    case MovePageUp:
      return rowAPageAway(row, -1);
    case MovePageDown:
      return rowAPageAway(row, 1);
    case MoveLeft:
    case MoveRight:
      break;
  }
  return row;
}

QModelIndex TimelineTable::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
  if (m_layout.count() == 0) return {};
  const QModelIndex current = currentIndex();
  const int row =
      current.isValid() ? rowAfter(current.row(), action) : rowAfter(0, action == MoveEnd ? MoveEnd : MoveHome);
  return row < 0 ? current : model()->index(row, 0);
}

void TimelineTable::setSelection(const QRect&, QItemSelectionModel::SelectionFlags command) {
  // Selection is single, and the current index has just been set to the row.
  selectionModel()->select(currentIndex(), command);
}

QRegion TimelineTable::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  for (const QItemSelectionRange& range : selection) {
    region += rectOf(range.top()).united(rectOf(range.bottom())).intersected(viewport()->rect());
  }
  return region;
}

QItemSelectionModel::SelectionFlags TimelineTable::selectionCommand(const QModelIndex& index,
                                                                    const QEvent* event) const {
  return keepingSelection(index, QListView::selectionCommand(index, event));
}

void TimelineTable::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;  // a context menu doesn't change the selection
  const QPoint point = event->position().toPoint();
  const QModelIndex index = indexAt(point);
  if (isGroup(index)) return;
  if (index.isValid() && isFoldingPoint && isFoldingPoint(index, point)) {
    fold(index.row(), std::nullopt);
  } else {
    QListView::mousePressEvent(event);
  }
}

void TimelineTable::mouseDoubleClickEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  const QModelIndex index = indexAt(point);
  if (isGroup(index)) return;
  if (index.isValid() && isFoldingPoint && isFoldingPoint(index, point)) return mousePressEvent(event);
  QListView::mouseDoubleClickEvent(event);
  if (index.isValid() && event->button() == Qt::LeftButton && fold) fold(index.row(), std::nullopt);
}

void TimelineTable::keyPressEvent(QKeyEvent* event) {
  const bool isHorizontal = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
  if (isHorizontal && currentIndex().isValid() && fold) {
    const bool opens = (event->key() == Qt::Key_Right) == (layoutDirection() == Qt::LeftToRight);
    if (fold(currentIndex().row(), opens)) return;
  }
  QListView::keyPressEvent(event);
}

void TimelineTable::resizeEvent(QResizeEvent* event) {
  QListView::resizeEvent(event);
  scrollToNow();
}

void TimelineTable::focusInEvent(QFocusEvent* event) {
  // QAbstractItemView::focusInEvent would make the first row current, which then looks half selected.
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

void TimelineTable::changeEvent(QEvent* event) {
  QListView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    m_layout.setHeights(heights());
    updateGeometries();
    viewport()->update();
    if (appearanceDidChange) appearanceDidChange();
  }
  if (event->type() == QEvent::PaletteChange) viewport()->update();
}

void TimelineTable::paintEvent(QPaintEvent* event) {
  if (m_layout.count() == 0) {
    drawEmptyLabel(*viewport(), emptyLabel ? emptyLabel() : QString());
    return;
  }
  QPainter painter(viewport());
  const int bottom = std::min(event->rect().bottom() + verticalOffset() + 1, m_layout.height());
  for (int row = m_layout.rowAt(std::min(event->rect().top() + verticalOffset(), m_layout.height() - 1));
       row < m_layout.count() && m_layout.top(row) < bottom; ++row) {
    drawRow(painter, row, rectOf(row));
  }
  if (pinnedGroup() >= 0) drawRow(painter, pinnedGroup(), pinnedRect());
}

void TimelineTable::drawRow(QPainter& painter, int row, const QRect& rect) {
  const QModelIndex index = model()->index(row, 0);
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  option.rect = rect;
  option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
  option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
  itemDelegate()->paint(&painter, option, index);
}

}  // namespace mirvel::ui
