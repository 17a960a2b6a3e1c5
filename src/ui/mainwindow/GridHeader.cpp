#include "ui/mainwindow/GridHeader.h"

#include <QPainter>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace mirvel::ui {

namespace {

int iconSide(const QWidget& widget) {
  return widget.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &widget);
}

void drawLine(QPainter& painter, const QWidget& widget, const QRect& rect, int margin, bool isPinned) {
  QColor line = widget.palette().color(QPalette::Text);
  // A pinned header needs a stronger line, since items scroll below it.
  line.setAlphaF(isPinned ? 0.25F : 0.12F);
  const int aside = isPinned ? 0 : margin;
  painter.fillRect(QRect(rect.left() + aside, rect.bottom(), rect.width() - 2 * aside, 1), line);
}

}  // namespace

int groupHeaderHeight(const QWidget& widget) {
  return std::max(iconSide(widget), widget.fontMetrics().height()) + widget.fontMetrics().height();
}

void drawGroupHeader(QPainter& painter, const QWidget& widget, const QRect& rect, const GridGroup& group,
                     bool isPinned) {
  const int margin = widget.fontMetrics().height();
  const int icon = iconSide(widget);
  const Qt::LayoutDirection direction = widget.layoutDirection();
  painter.save();
  painter.fillRect(rect, widget.palette().color(QPalette::Base));
  drawLine(painter, widget, rect, margin, isPinned);
  const QRect picture(rect.left() + margin, rect.top() + (rect.height() - icon) / 2, icon, icon);
  group.icon.paint(&painter, QStyle::visualRect(direction, rect, picture));
  QFont bold = widget.font();
  bold.setWeight(QFont::DemiBold);
  painter.setFont(bold);
  painter.setPen(widget.palette().color(QPalette::Text));
  const QRect text = rect.adjusted(margin + icon + margin / 2, 0, -margin, 0);
  const QString title = QFontMetrics(bold).elidedText(group.title, Qt::ElideMiddle, text.width());
  const Qt::Alignment side = QStyle::visualAlignment(direction, Qt::AlignLeft) | Qt::AlignAbsolute | Qt::AlignVCenter;
  painter.drawText(QStyle::visualRect(direction, rect, text), static_cast<int>(side) | Qt::TextSingleLine, title);
  painter.restore();
}

}  // namespace mirvel::ui
