#include "ui/support/EmptyLabel.h"

#include <QPainter>
#include <QWidget>

namespace mirvel::ui {

void drawEmptyLabel(QWidget& widget, const QString& text) {
  if (text.isEmpty()) return;
  QPainter painter(&widget);
  QFont large = widget.font();
  large.setPointSizeF(large.pointSizeF() * 1.5);
  painter.setFont(large);
  painter.setPen(widget.palette().color(QPalette::PlaceholderText));
  painter.drawText(widget.rect(), Qt::AlignCenter | Qt::TextWordWrap, text);
}

}  // namespace mirvel::ui
