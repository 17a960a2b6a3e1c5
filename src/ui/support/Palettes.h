#pragma once

#include <QColor>
#include <QPalette>

class QWidget;

namespace mirvel::ui {

enum class Scheme { Light, Dark };

/// The program's palette for the Fusion style, used where the desktop offers none for the scheme. Text has a contrast
/// of at least 7:1 (WCAG 2.1, level AAA).
QPalette paletteOf(Scheme scheme);

/// A palette of white text on black, with a contrast of at least 10:1.
QPalette highContrastPalette();
/// Whether the palette has the greatest possible contrast on a dark base, like that one.
bool isHighContrast(const QPalette& palette);

/// Dark if the palette's text is lighter than its windows, otherwise Light.
Scheme schemeOf(const QPalette& palette);

/// The contrast ratio of two opaque colours, from 1 (equal luminance) to 21 (black and white), as defined in
/// https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio.
double contrast(const QColor& one, const QColor& other);

/// The colour of invalid input: red, with a contrast of at least 4.5:1 (WCAG 2.1, level AA) to the palette's fields and
/// windows.
QColor invalidData(const QPalette& palette);

/// Shows the text of a field in that colour with `what` as the explanation; an empty `what` restores the normal look.
/// Must be called again after a change of the palette.
void markInvalidData(QWidget& field, const QString& what);

}  // namespace mirvel::ui
