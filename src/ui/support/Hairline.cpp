#include "ui/support/Hairline.h"

#include <QPainter>

namespace mirvel::ui {

Hairline::Hairline(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Hairline::paintEvent(QPaintEvent* /*event*/) {
  QColor color = palette().color(QPalette::WindowText);
  color.setAlphaF(0.22F);
  QPainter(this).fillRect(rect(), color);
}

}  // namespace mirvel::ui
