#include "ui/support/RadioButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

#include "ui/support/CheckBox.h"

namespace mirvel::ui {

void RadioButton::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.palette = boxPalette(option.palette);
  painter.drawControl(QStyle::CE_RadioButton, option);
}

}  // namespace mirvel::ui
