#include "ui/mainwindow/GridView.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "ui/mainwindow/GridItemDelegate.h"
#include "ui/mainwindow/JobView.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {

GridView::GridView(QWidget* parent) : QAbstractItemView(parent) {
  installGridAccessible();
  setFrameShape(QFrame::NoFrame);
  prepareJobView(*this);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setItemDelegate(new GridItemDelegate(this));
  measure();
}

void GridView::setModel(QAbstractItemModel* model) {
  QAbstractItemView::setModel(model);
  if (!model) return;
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    const QModelIndexList marked = selectionModel()->selectedIndexes();
    if (!m_isMarking && !marked.isEmpty() && selectionDidChange) selectionDidChange(marked.front().row());
  });
}

void GridView::setGroups(std::vector<GridGroup> groups) {
  m_groups = std::move(groups);
  std::vector<int> counts;
  for (const GridGroup& group : m_groups) counts.push_back(group.count);
  m_layout.setCounts(counts);
}

void GridView::measure() {
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const int line = fontMetrics().height();
  m_layout.setMeasures({.cell = itemDelegate()->sizeHint(option, {}),
                        .header = groupHeaderHeight(*this),
                        .margin = line / 2,
                        .gap = line});
  m_layout.setDirection(layoutDirection());
}

void GridView::mark(int row) {
  m_isMarking = true;
  if (row < 0) {
    selectionModel()->clear();
  } else {
    selectionModel()->setCurrentIndex(model()->index(row, 0), QItemSelectionModel::ClearAndSelect);
  }
  m_column = -1;
  m_isMarking = false;
}

void GridView::click(int row) {
  const QModelIndex index = model()->index(row, 0);
  m_column = -1;
  if (!selectionModel()->isSelected(index)) {
    setCurrentIndex(index);
  } else if (markedItemWasClicked) {
    markedItemWasClicked(row);
  }
}

int GridView::verticalOffset() const {
  return verticalScrollBar()->value();
}

QRect GridView::visualRect(const QModelIndex& index) const {
  return index.isValid() ? m_layout.item(index.row()).translated(0, -verticalOffset()) : QRect();
}

QModelIndex GridView::indexAt(const QPoint& point) const {
  for (const int section : m_layout.sectionsIn(verticalOffset(), verticalOffset() + viewport()->height())) {
    const QRect header = m_layout.header(section, verticalOffset()).translated(0, -verticalOffset());
    if (header.contains(point)) return {};  // a pinned header may cover items
  }
  const int row = m_layout.itemAt(point + QPoint(0, verticalOffset()));
  return row < 0 || !model() ? QModelIndex() : model()->index(row, 0);
}

void GridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
  if (!index.isValid()) return;
  const QRect item = m_layout.item(index.row());
  const int highest = item.top() - m_layout.measures().header;  // leaves room for the pinned header
  const int lowest = item.bottom() + 1 + m_layout.measures().gap / 2 - viewport()->height();
  QScrollBar& bar = *verticalScrollBar();
  if (hint == PositionAtCenter) {
    bar.setValue((highest + lowest) / 2);
  } else if (hint == PositionAtTop || bar.value() > highest) {
    bar.setValue(highest);
  } else if (hint == PositionAtBottom || bar.value() < lowest) {
    bar.setValue(std::min(lowest, highest));
  }
}

void GridView::keyboardSearch(const QString& search) {
  m_column = -1;
  QAbstractItemView::keyboardSearch(search);
}

QModelIndex GridView::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
  if (!model() || m_layout.count() == 0) return {};
  const QModelIndex current = currentIndex();
  const int row = current.isValid() ? target(current.row(), action) : action == MoveEnd ? m_layout.count() - 1 : 0;
  return model()->index(std::clamp(row, 0, m_layout.count() - 1), 0);
}

int GridView::target(int row, CursorAction action) {
  const int toTheRight = isRightToLeft() ? -1 : 1;
  const bool isAcross = action == MoveUp || action == MoveDown;
  if (!isAcross) m_column = -1;
  if (isAcross && m_column < 0) m_column = m_layout.column(row);
  switch (action) {
    case MoveUp:
      return m_layout.above(row, m_column);
    case MoveDown:
      return m_layout.below(row, m_column);
    case MoveLeft:
      return row - toTheRight;
    case MoveRight:
      return row + toTheRight;
    case MoveNext:
      return row + 1;
    case MovePrevious:
      return row - 1;
    case MoveHome:
      return 0;
    case MoveEnd:
      return m_layout.count() - 1;
    case MovePageUp:
    case MovePageDown:
      return page(row, action == MovePageDown);
  }
  return row;
}

int GridView::page(int row, bool isDown) const {
  const int column = m_layout.column(row);
  const int start = m_layout.item(row).top();
  const int reach = viewport()->height() - m_layout.measures().header - m_layout.measures().cell.height();
  int reached = row;
  for (;;) {
    const int next = isDown ? m_layout.below(reached, column) : m_layout.above(reached, column);
    const bool isTooFar = reached != row && std::abs(m_layout.item(next).top() - start) > reach;
    if (next == reached || isTooFar) return reached;
    reached = next;
  }
}

void GridView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
  selectionModel()->select(indexAt(rect.center()), command);
}

QRegion GridView::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  for (const QModelIndex& index : selection.indexes()) region += visualRect(index);
  return region;
}

QItemSelectionModel::SelectionFlags GridView::selectionCommand(const QModelIndex& index, const QEvent* event) const {
  return keepingSelection(index, QAbstractItemView::selectionCommand(index, event));
}

void GridView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;  // a context menu doesn't change the selection
  m_column = -1;
  const QModelIndex pressed = indexAt(event->position().toPoint());
  const bool wasMarked = pressed.isValid() && selectionModel()->isSelected(pressed);
  QAbstractItemView::mousePressEvent(event);
  if (wasMarked && markedItemWasClicked) markedItemWasClicked(pressed.row());
}

void GridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  if (!QAccessible::isActive() || !current.isValid() || !hasFocus()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(current.row());
  QAccessible::updateAccessibility(&event);
}

/// The item that keeps its position while the columns change: the selected one if visible, otherwise the first visible
/// one.
int GridView::anchor() const {
  const auto ranges = m_layout.itemsIn(verticalOffset(), verticalOffset() + viewport()->height());
  const int current = currentIndex().row();
  for (const auto& [first, last] : ranges) {
    if (current >= first && current <= last) return current;
  }
  return ranges.empty() ? -1 : ranges.front().first;
}

void GridView::reflow() {
  const int kept = anchor();
  const int place = kept < 0 ? 0 : m_layout.item(kept).top() - verticalOffset();
  m_layout.setWidth(viewport()->width());
  // Showing or hiding the scroll bar resizes the viewport, which runs the layout again before `setRange` returns.
  verticalScrollBar()->setRange(0, std::max(0, m_layout.height() - viewport()->height()));
  if (kept >= 0) verticalScrollBar()->setValue(m_layout.item(kept).top() - place);
}

void GridView::updateGeometries() {
  reflow();
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(std::max(1, m_layout.measures().cell.height() / 3));
  QAbstractItemView::updateGeometries();
  viewport()->update();
}

void GridView::scrollContentsBy(int /*dx*/, int /*dy*/) {
  viewport()->update();  // a full repaint, since pinned headers don't scroll
}

void GridView::changeEvent(QEvent* event) {
  QAbstractItemView::changeEvent(event);
  switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::LayoutDirectionChange:
      measure();
      updateGeometries();
      break;
    case QEvent::PaletteChange:
    case QEvent::ActivationChange:
      viewport()->update();
      break;
    default:
      break;
  }
}

void GridView::focusInEvent(QFocusEvent* event) {
  // QAbstractItemView::focusInEvent would make the first item current, which then looks half selected.
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

void GridView::focusOutEvent(QFocusEvent* event) {
  QAbstractItemView::focusOutEvent(event);
  viewport()->update();
}

void GridView::paintEvent(QPaintEvent* event) {
  if (m_layout.count() == 0) {
    if (emptyLabel) drawEmptyLabel(*viewport(), emptyLabel());
    return;
  }
  QPainter painter(viewport());
  drawItems(painter, event->rect());
  drawHeaders(painter);
}

void GridView::drawItems(QPainter& painter, const QRect& dirty) {
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const auto usual = option.state;
  for (const auto& [first, last] :
       m_layout.itemsIn(dirty.top() + verticalOffset(), dirty.bottom() + 1 + verticalOffset())) {
    for (int row = first; row <= last; ++row) {
      const QModelIndex index = model()->index(row, 0);
      option.rect = visualRect(index);
      option.state = usual;
      option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
      option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
      itemDelegate()->paint(&painter, option, index);
    }
  }
}

void GridView::drawHeaders(QPainter& painter) {
  const int top = verticalOffset();
  for (const int section : m_layout.sectionsIn(top, top + viewport()->height())) {
    const QRect header = m_layout.header(section, top);
    const bool isPinned = header != m_layout.header(section, 0) && header.top() == top;
    drawGroupHeader(painter, *viewport(), header.translated(0, -top), m_groups[static_cast<std::size_t>(section)],
                    isPinned);
  }
}

}  // namespace mirvel::ui
