#include "ui/support/Labels.h"

#include <QPainter>

namespace mirvel::ui {

SecondaryLabel::SecondaryLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setTextFormat(Qt::PlainText);
  setForegroundRole(QPalette::PlaceholderText);
}

Hairline::Hairline(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Hairline::paintEvent(QPaintEvent* /*event*/) {
  QColor color = palette().color(QPalette::WindowText);
  color.setAlphaF(0.22F);
  QPainter(this).fillRect(rect(), color);
}

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
