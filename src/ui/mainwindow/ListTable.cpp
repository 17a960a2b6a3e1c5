#include "ui/mainwindow/ListTable.h"

#include <QEvent>
#include <QHeaderView>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QScrollBar>
#include <algorithm>

#include "ui/mainwindow/JobView.h"
#include "ui/mainwindow/ListCellDelegate.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {

namespace {

/// The application's style with more horizontal padding in cells and headers, because the table has no frame that would
/// keep text away from the window's edge.
class RoomyStyle final : public QProxyStyle {
 public:
  explicit RoomyStyle(QObject* owner) { setParent(owner); }

  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    if (metric == PM_FocusFrameHMargin) return 3 * usual;
    if (metric == PM_HeaderMargin) return usual + 2 * QProxyStyle::pixelMetric(PM_FocusFrameHMargin, option, widget);
    return usual;
  }
};

}  // namespace

ListTable::ListTable(QWidget* parent) : QTreeView(parent) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  prepareJobView(*this);
  setSelectionBehavior(SelectRows);
  setHorizontalScrollMode(ScrollPerPixel);
  setItemDelegate(new ListCellDelegate(this));
  setStyle(new RoomyStyle(this));
  header()->setStyle(style());
  header()->setContextMenuPolicy(Qt::CustomContextMenu);
  header()->setSectionsClickable(true);
  header()->setSortIndicatorShown(true);
  header()->setSortIndicator(-1, Qt::AscendingOrder);
}

void ListTable::setModel(QAbstractItemModel* model) {
  QTreeView::setModel(model);
  if (!model) return;
  guardSelection(
      *this, [this] { return m_isMarking || !selectionMayChange || selectionMayChange(); },
      [this](int row) {
        if (!m_isMarking && selectionDidChange) selectionDidChange(row);
      });
}

void ListTable::scrollTo(const QModelIndex& index, ScrollHint hint) {
  const int aside = horizontalScrollBar()->value();
  QTreeView::scrollTo(index, hint);
  horizontalScrollBar()->setValue(aside);
}

void ListTable::keyboardSearch(const QString& search) {
  const QModelIndex name = currentIndex().siblingAtColumn(static_cast<int>(Column::List::name));
  if (name.isValid()) selectionModel()->setCurrentIndex(name, QItemSelectionModel::NoUpdate);
  QTreeView::keyboardSearch(search);
}

void ListTable::mark(int row) {
  m_isMarking = true;
  if (row < 0) {
    selectionModel()->clear();
  } else {
    selectionModel()->setCurrentIndex(model()->index(row, firstVisibleColumn()),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  m_isMarking = false;
}

int ListTable::firstVisibleColumn() const {
  const auto columns = visibleColumns();
  return columns.empty() ? 0 : static_cast<int>(columns.front());
}

QItemSelectionModel::SelectionFlags ListTable::selectionCommand(const QModelIndex& index, const QEvent* event) const {
  const auto command = QTreeView::selectionCommand(index, event);
  // A click below the rows, or a Control-click, would deselect the row whose job is shown.
  const bool leavesNothing = !index.isValid() || command.testFlag(QItemSelectionModel::Deselect);
  return leavesNothing ? QItemSelectionModel::NoUpdate : command;
}

std::vector<Column::List> ListTable::visibleColumns() const {
  std::vector<Column::List> columns;
  for (const Column::List column : Column::allList) {
    if (!isColumnHidden(static_cast<int>(column))) columns.push_back(column);
  }
  return columns;
}

void ListTable::setVisibleColumns(const std::vector<Column::List>& columns) {
  for (const Column::List column : Column::allList) {
    setColumnHidden(static_cast<int>(column), std::find(columns.begin(), columns.end(), column) == columns.end());
  }
}

std::vector<ListPlace> ListTable::places() const {
  std::vector<ListPlace> result;
  std::size_t last = 0;
  for (int i = 0; i < header()->count(); ++i) {
    const int section = header()->logicalIndex(i);
    result.push_back({.column = Column::allList.at(static_cast<std::size_t>(section)),
                      .width = header()->sectionSize(section),
                      .isVisible = !isColumnHidden(section)});
    if (result.back().isVisible) last = result.size() - 1;
  }
  if (!result.empty()) result[last].width = 0;
  return result;
}

void ListTable::setPlaces(const std::vector<ListPlace>& places) {
  for (int i = 0; i < static_cast<int>(places.size()); ++i) {
    const ListPlace& place = places[static_cast<std::size_t>(i)];
    const int section = static_cast<int>(place.column);
    header()->moveSection(header()->visualIndex(section), i);
    if (place.width > 0) header()->resizeSection(section, place.width);
    setColumnHidden(section, !place.isVisible);
  }
}

void ListTable::rightSize(int column) {
  header()->resizeSection(column, header()->sectionSizeHint(column));
  const int widest = widestCell(column);
  if (columnWidth(column) < widest) header()->resizeSection(column, widest + 2);
}

void ListTable::rightSizeAll() {
  for (int column = 0; column < header()->count(); ++column) {
    if (!isColumnHidden(column)) rightSize(column);
  }
}

int ListTable::widestCell(int column) const {
  const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
  const QFontMetrics metrics(font());
  int widest = 0;
  for (int row = 0; row < model()->rowCount(); ++row) {
    const QString text = model()->index(row, column).data().toString();
    widest = std::max(widest, metrics.horizontalAdvance(text) + 2 * margin);
  }
  return widest;
}

void ListTable::paintEvent(QPaintEvent* event) {
  const bool hasRows = model() && model()->rowCount() > 0;
  if (alternatingRowColors() != hasRows) setAlternatingRowColors(hasRows);
  QTreeView::paintEvent(event);
  if (!hasRows && emptyLabel) drawEmptyLabel(*viewport(), emptyLabel());
}

void ListTable::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton)
    QTreeView::mousePressEvent(event);  // a context menu doesn't change the selection
}

void ListTable::focusInEvent(QFocusEvent* event) {
  // QAbstractItemView::focusInEvent would make the first row current, which then looks half selected.
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

void ListTable::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) viewport()->update();
}

}  // namespace mirvel::ui
