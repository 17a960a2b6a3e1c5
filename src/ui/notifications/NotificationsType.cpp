#include "ui/notifications/NotificationsType.h"

#include <QStyle>
#include <QWidget>

#include "ui/support/Controls.h"

namespace mirvel::ui {

QWidget* NotificationRows::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const {
  QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
  const auto name = index.model()->headerData(index.column(), Qt::Horizontal, Qt::AccessibleTextRole);
  if (editor) editor->setAccessibleName(name.toString());
  return editor;
}

QSize NotificationRows::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  // A text field in a row has a frame around a line of text.
  const int frame = option.widget ? 2 * option.widget->style()->pixelMetric(QStyle::PM_DefaultFrameWidth) : 0;
  const QSize hint = QStyledItemDelegate::sizeHint(option, index);
  return {hint.width(), qMax(hint.height(), option.fontMetrics.lineSpacing() + 2 * frame)};
}

void NotificationRows::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  if ((option->features & QStyleOptionViewItem::HasCheckIndicator) != 0) option->palette = boxPalette(option->palette);
}

}  // namespace mirvel::ui
