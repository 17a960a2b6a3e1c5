#include "ui/support/InvalidData.h"

#include <QWidget>

#include "ui/support/Palettes.h"

namespace mirvel::ui {

QColor invalidData(const QPalette& palette) {
  return QColor::fromRgb(schemeOf(palette) == Scheme::Dark ? 0xff6961 : 0xc8001a);
}

void markInvalidData(QWidget& field, const QString& what) {
  QPalette colors;  // unset roles are inherited from the parent
  if (!what.isEmpty()) {
    const QColor red = invalidData(field.parentWidget() ? field.parentWidget()->palette() : field.palette());
    colors.setColor(QPalette::Text, red);
    colors.setColor(QPalette::PlaceholderText, red);
  }
  field.setPalette(colors);
  field.setAccessibleDescription(what);
}

}  // namespace mirvel::ui
