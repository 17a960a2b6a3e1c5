#pragma once

#include <QColor>
#include <QPalette>

class QWidget;

namespace mirvel::ui {

/// The colour of invalid input: red, with a contrast of at least 4.5:1 (WCAG 2.1, level AA) to the palette's fields and
/// windows.
QColor invalidData(const QPalette& palette);

/// Shows the text of a field in that colour with `what` as the explanation; an empty `what` restores the normal look.
/// Must be called again after a change of the palette.
void markInvalidData(QWidget& field, const QString& what);

}  // namespace mirvel::ui
