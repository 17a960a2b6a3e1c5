#include "ui/support/CheckBox.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace mirvel::ui {

QPalette boxPalette(QPalette palette) {
  palette.setColor(QPalette::Window, palette.color(QPalette::PlaceholderText));
  return palette;
}

void CheckBox::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.palette = boxPalette(option.palette);
  painter.drawControl(QStyle::CE_CheckBox, option);
}

}  // namespace mirvel::ui
