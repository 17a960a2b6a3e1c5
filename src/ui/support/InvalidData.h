#pragma once

#include <QColor>
#include <QPalette>

class QWidget;

namespace mirvel::ui {

/// The colour of a text that can't be taken as it is: red, with a contrast of at least 4.5:1 (WCAG 2.1, level AA) to
/// the fields and windows of the palette.
QColor invalidData(const QPalette& palette);

/// Shows the text of a field in that colour and says what is wrong with it; with an empty text, in its own again. To be
/// called anew when the palette around it changes.
void markInvalidData(QWidget& field, const QString& what);

}  // namespace mirvel::ui
