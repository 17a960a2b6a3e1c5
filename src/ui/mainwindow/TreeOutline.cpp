#include "ui/mainwindow/TreeOutline.h"

#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QPainter>
#include <QPersistentModelIndex>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QWidget>
#include <algorithm>

#include "ui/mainwindow/JobView.h"
#include "ui/mainwindow/TreeModel.h"
#include "ui/support/Labels.h"

namespace mirvel::ui {

/// Paints the rows of tree mode, with the count of a group on a button at the trailing edge.
class TreeRowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// The rectangle of the group's button in a row at `option.rect`; empty for a job.
  static QRect button(const QStyleOptionViewItem& option, const QModelIndex& index);
  /// Sets the group whose button is drawn pressed.
  void setPressed(const QModelIndex& group) { m_pressed = group; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  QPersistentModelIndex m_pressed;
};

namespace {

void drawButton(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rect, const QString& text,
                bool isPressed) {
  const bool isHovered = option.state.testFlag(QStyle::State_MouseOver);
  QColor ground = option.palette.color(QPalette::Text);
  ground.setAlphaF(isPressed ? 0.28F : isHovered ? 0.16F : 0.10F);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(rect, rect.height() / 2.0, rect.height() / 2.0);
  painter.setFont(option.font);
  painter.setPen(option.palette.color(QPalette::Text));
  painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine, text);
  painter.restore();
}

void drawMark(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QVariant mark = index.data(TreeModel::MarkRole);
  if (mark.isNull()) return;
  QStyleOptionViewItem row = option;
  row.features |= QStyleOptionViewItem::HasDecoration;
  const QRect place = option.widget->style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &row, option.widget);
  QRect icon(QPoint(), option.decorationSize);
  icon.moveCenter(place.center());
  mark.value<QIcon>().paint(&painter, cornerMark(icon, option.direction));
}

}  // namespace

QRect TreeRowDelegate::button(const QStyleOptionViewItem& option, const QModelIndex& index) {
  const QString text = index.data(TreeModel::CountRole).toString();
  if (text.isEmpty()) return {};
  const int line = option.fontMetrics.height();
  const int height = std::min(line + line / 6, option.rect.height());
  const int width = std::max(option.fontMetrics.horizontalAdvance(text) + line, 2 * line);
  const QRect rect(option.rect.right() + 1 - width - line / 2, option.rect.top() + (option.rect.height() - height) / 2,
                   width, height);
  return QStyle::visualRect(option.direction, option.rect, rect);
}

void TreeRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QRect count = button(option, index);
  QStyleOptionViewItem row = option;
  if (!count.isEmpty()) {  // the title must not run under the button
    const int gap = option.fontMetrics.height() / 2;
    if (option.direction == Qt::RightToLeft) {
      row.rect.setLeft(count.right() + 1 + gap);
    } else {
      row.rect.setRight(count.left() - 1 - gap);
    }
  }
  QStyledItemDelegate::paint(painter, row, index);
  drawMark(*painter, row, index);
  if (!count.isEmpty()) {
    drawButton(*painter, option, count, index.data(TreeModel::CountRole).toString(), m_pressed == index);
  }
}

void TreeRowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (TreeModel::isGroup(index)) option->font.setWeight(QFont::DemiBold);
  if (index.data(TreeModel::SecondaryRole).toBool()) {
    option->palette.setColor(QPalette::Text, option->palette.color(QPalette::PlaceholderText));
  }
}

QSize TreeRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QStyle& style = *option.widget->style();
  const int icon = style.pixelMetric(QStyle::PM_SmallIconSize, &option, option.widget);
  QSize size = QStyledItemDelegate::sizeHint(option, index);
  // Line spacing plus padding, the same for all rows, because the outline has uniform row heights.
  size.setHeight(std::max(option.fontMetrics.lineSpacing(), icon) + option.fontMetrics.height() / 2);
  return size;
}

namespace {

/// A selection model that asks before another job is selected. Groups can become current but are never selected; moving
/// to a group leaves the selection as it is.
class TreeSelection final : public QItemSelectionModel {
 public:
  using MayChange = std::function<bool(const QModelIndex&)>;

  /// `mayChange` receives the index to be selected; an invalid index means clearing the selection.
  TreeSelection(QAbstractItemModel* model, MayChange mayChange, QObject* parent)
      : QItemSelectionModel(model, parent), m_mayChange(std::move(mayChange)) {}

  using QItemSelectionModel::select;

  void setCurrentIndex(const QModelIndex& index, SelectionFlags command) override {
    if (index.isValid() && !index.parent().isValid()) {
      QItemSelectionModel::setCurrentIndex(index, NoUpdate);
    } else if (index == currentIndex() || isSelected(index) || m_mayChange(index)) {
      QItemSelectionModel::setCurrentIndex(index, command);
    }
  }
  void select(const QItemSelection& selection, SelectionFlags command) override {
    if (command == NoUpdate || selection == this->selection()) return;
    const QModelIndex index = selection.indexes().value(0);
    if (m_isResetting || m_mayChange(index)) QItemSelectionModel::select(selection, command | Clear);
  }
  void reset() override {
    m_isResetting = true;
    QItemSelectionModel::reset();
    m_isResetting = false;
  }

 private:
  MayChange m_mayChange;
  bool m_isResetting = false;
};

}  // namespace

TreeOutline::TreeOutline(QWidget* parent) : QTreeView(parent), m_delegate(new TreeRowDelegate(this)) {
  setFrameShape(NoFrame);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setTextElideMode(Qt::ElideMiddle);  // names differ at their beginning and end
  prepareJobView(*this);
  // With SelectRows, Qt's accessible tree confuses a row's number within its group with that in the whole tree.
  setSelectionBehavior(SelectItems);
  setItemDelegate(m_delegate);
  viewport()->setAttribute(Qt::WA_Hover);
}

void TreeOutline::setModel(QAbstractItemModel* model) {
  QTreeView::setModel(model);
  if (!model) return;
  auto* selection = new TreeSelection(
      model, [this](const QModelIndex& index) { return mayMark(index); }, this);
  setSelectionModel(selection);
  connect(selection, &QItemSelectionModel::selectionChanged, this, [this] {
    const QModelIndexList rows = selectionModel()->selectedIndexes();
    if (!m_isMarking && !rows.isEmpty() && selectionDidChange) selectionDidChange(rows.front());
  });
}

bool TreeOutline::mayMark(const QModelIndex& index) {
  if (m_isMarking) return true;
  if (!index.isValid()) return false;
  const auto& mayDo = m_isHandlingInput ? maySelect : accessibilityPress;
  return mayDo && mayDo(index);
}

bool TreeOutline::viewportEvent(QEvent* event) {
  const QScopedValueRollback handling(m_isHandlingInput, true);
  return QTreeView::viewportEvent(event);
}

void TreeOutline::keyPressEvent(QKeyEvent* event) {
  const QScopedValueRollback handling(m_isHandlingInput, true);
  QTreeView::keyPressEvent(event);
}

void TreeOutline::mark(const QModelIndex& index) {
  const QScopedValueRollback marking(m_isMarking, true);
  if (index.isValid()) {
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
  } else {
    selectionModel()->clear();
  }
}

QItemSelectionModel::SelectionFlags TreeOutline::selectionCommand(const QModelIndex& index, const QEvent* event) const {
  return keepingSelection(index, QTreeView::selectionCommand(index, event));
}

QRect TreeOutline::countButton(const QModelIndex& index) const {
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  option.rect = visualRect(index);
  return TreeRowDelegate::button(option, index);
}

bool TreeOutline::pressButton(const QMouseEvent& event) {
  const QPoint position = event.position().toPoint();
  const QModelIndex index = indexAt(position);
  if (event.button() != Qt::LeftButton || !countButton(index).contains(position)) return false;
  setPressed(index);
  return true;
}

void TreeOutline::setPressed(const QModelIndex& group) {
  m_pressed = group;
  m_delegate->setPressed(group);
  viewport()->update();
}

void TreeOutline::mousePressEvent(QMouseEvent* event) {
  const bool isOfRows = event->button() == Qt::LeftButton;  // a context menu doesn't change the selection
  if (isOfRows && !pressButton(*event)) QTreeView::mousePressEvent(event);
}

void TreeOutline::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!pressButton(*event)) QTreeView::mouseDoubleClickEvent(event);
}

void TreeOutline::mouseMoveEvent(QMouseEvent* event) {
  if (!m_pressed.isValid()) QTreeView::mouseMoveEvent(event);  // dragging from a pressed button selects no rows
}

void TreeOutline::mouseReleaseEvent(QMouseEvent* event) {
  if (!m_pressed.isValid()) return QTreeView::mouseReleaseEvent(event);
  const QModelIndex group = m_pressed;
  setPressed({});
  if (countButton(group).contains(event->position().toPoint()) && countWasClicked) countWasClicked(group);
}

void TreeOutline::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  const bool hasRows = model() && model()->rowCount() > 0;
  if (!hasRows && emptyLabel) drawEmptyLabel(*viewport(), emptyLabel());
}

void TreeOutline::focusInEvent(QFocusEvent* event) {
  // QAbstractItemView::focusInEvent would make the first row current, which then looks half selected.
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

void TreeOutline::changeEvent(QEvent* event) {
  QTreeView::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) viewport()->update();
}

}  // namespace mirvel::ui
