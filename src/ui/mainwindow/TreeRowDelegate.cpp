#include "ui/mainwindow/TreeRowDelegate.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>
#include <algorithm>

#include "ui/mainwindow/TreeModel.h"

namespace mirvel::ui {

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

}  // namespace mirvel::ui
