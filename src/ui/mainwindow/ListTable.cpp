#include "ui/mainwindow/ListTable.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>
#include <algorithm>

#include "ui/mainwindow/JobView.h"
#include "ui/mainwindow/ListTableModel.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {

/// Paints the cells of list mode, with icons and check boxes centred in their columns.
class ListCellDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

namespace {

QRect centered(QSize size, const QRect& cell) {
  QRect rect(QPoint(), size);
  rect.moveCenter(cell.center());
  return rect;
}

void drawCheckBox(QPainter* painter, QStyleOptionViewItem option, bool isChecked, QStyle& style) {
  option.rect = centered(QSize(style.pixelMetric(QStyle::PM_IndicatorWidth, &option),
                               style.pixelMetric(QStyle::PM_IndicatorHeight, &option)),
                         option.rect);
  option.state.setFlag(isChecked ? QStyle::State_On : QStyle::State_Off);
  option.state.setFlag(QStyle::State_HasFocus, false);
  option.palette = boxPalette(option.palette);
  style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &option, painter, option.widget);
}

void drawIcon(QPainter* painter, const QStyleOptionViewItem& option, const QIcon& icon, QStyle& style) {
  const int side = style.pixelMetric(QStyle::PM_SmallIconSize, &option, option.widget);
  const bool isHighlighted =
      option.state.testFlag(QStyle::State_Selected) && option.state.testFlag(QStyle::State_Active);
  icon.paint(painter, centered(QSize(side, side), option.rect), Qt::AlignCenter,
             isHighlighted ? QIcon::Selected : QIcon::Normal);
}

void drawMark(QPainter* painter, const QStyleOptionViewItem& option, const QIcon& mark, QStyle& style) {
  const int side = style.pixelMetric(QStyle::PM_SmallIconSize, &option, option.widget);
  mark.paint(painter, cornerMark(centered(QSize(side, side), option.rect), option.direction));
}

}  // namespace

void ListCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QVariant check = index.data(Qt::CheckStateRole);
  const QVariant decoration = index.data(Qt::DecorationRole);
  const bool isText = check.isNull() && (decoration.isNull() || !index.data().toString().isEmpty());
  if (isText) {
    QStyledItemDelegate::paint(painter, option, index);
    return;
  }
  QStyleOptionViewItem background = option;
  initStyleOption(&background, index);
  background.text.clear();
  background.icon = {};
  background.features &= ~(QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDecoration);
  QStyle& style = option.widget ? *option.widget->style() : *QApplication::style();
  style.drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
  if (!check.isNull()) {
    drawCheckBox(painter, background, check.value<Qt::CheckState>() == Qt::Checked, style);
  } else {
    drawIcon(painter, background, decoration.value<QIcon>(), style);
    drawMark(painter, option, index.data(ListTableModel::markRole).value<QIcon>(), style);
  }
}

void ListCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (option->direction == Qt::LeftToRight || option->text.isRightToLeft()) return;
  // In a right-to-left window, left-to-right text is aligned to the right, where the column begins, but elided at its
  // own end.
  option->direction = Qt::LeftToRight;
  option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
  option->decorationPosition = QStyleOptionViewItem::Right;  // still where the column begins
}

QSize ListCellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QStyle& style = option.widget ? *option.widget->style() : *QApplication::style();
  const int icon = style.pixelMetric(QStyle::PM_SmallIconSize, &option, option.widget);
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  // Line spacing plus padding, and never less than the icon needs.
  size.setHeight(std::max(option.fontMetrics.lineSpacing(), icon) + option.fontMetrics.leading() +
                 option.fontMetrics.height() / 3);
  return size;
}

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
  const QModelIndex name = currentIndex().siblingAtColumn(static_cast<int>(ListColumn::Name));
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
  return keepingSelection(index, QTreeView::selectionCommand(index, event));
}

std::vector<ListColumn> ListTable::visibleColumns() const {
  std::vector<ListColumn> columns;
  for (const ListColumn column : allListColumns) {
    if (!isColumnHidden(static_cast<int>(column))) columns.push_back(column);
  }
  return columns;
}

void ListTable::setVisibleColumns(const std::vector<ListColumn>& columns) {
  for (const ListColumn column : allListColumns) {
    setColumnHidden(static_cast<int>(column), std::find(columns.begin(), columns.end(), column) == columns.end());
  }
}

std::vector<ListPlace> ListTable::places() const {
  std::vector<ListPlace> result;
  std::size_t last = 0;
  for (int i = 0; i < header()->count(); ++i) {
    const int section = header()->logicalIndex(i);
    result.push_back({.column = allListColumns.at(static_cast<std::size_t>(section)),
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
  const int iconWidth = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this) + 2 * margin;
  const QFontMetrics metrics(font());
  int widest = 0;
  for (int row = 0; row < model()->rowCount(); ++row) {
    const QModelIndex cell = model()->index(row, column);
    const QString text = cell.data().toString();
    const int icon = cell.data(Qt::DecorationRole).isNull() ? 0 : iconWidth;
    widest = std::max(widest, metrics.horizontalAdvance(text) + icon + 2 * margin);
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
