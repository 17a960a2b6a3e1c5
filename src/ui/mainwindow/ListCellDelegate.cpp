#include "ui/mainwindow/ListCellDelegate.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace mirvel::ui {

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
  // Styles derive the outline of a check box from the window colour, so that it vanishes on a dark base.
  const bool isDark = option.palette.base().color().lightness() < 128;
  if (isDark) option.palette.setColor(QPalette::Window, option.palette.color(QPalette::PlaceholderText));
  style.drawPrimitive(QStyle::PE_IndicatorItemViewItemCheck, &option, painter, option.widget);
}

void drawIcon(QPainter* painter, const QStyleOptionViewItem& option, const QIcon& icon, QStyle& style) {
  const int side = style.pixelMetric(QStyle::PM_SmallIconSize, &option, option.widget);
  const bool isHighlighted =
      option.state.testFlag(QStyle::State_Selected) && option.state.testFlag(QStyle::State_Active);
  icon.paint(painter, centered(QSize(side, side), option.rect), Qt::AlignCenter,
             isHighlighted ? QIcon::Selected : QIcon::Normal);
}

}  // namespace

void ListCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QVariant check = index.data(Qt::CheckStateRole);
  const QVariant decoration = index.data(Qt::DecorationRole);
  if (check.isNull() && decoration.isNull()) {
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
  }
}

void ListCellDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if (option->direction == Qt::LeftToRight || option->text.isRightToLeft()) return;
  // In a right-to-left window, left-to-right text is aligned to the right, where the column begins, but elided at its
  // own end.
  option->direction = Qt::LeftToRight;
  option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
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

}  // namespace mirvel::ui
