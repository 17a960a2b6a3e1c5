#pragma once

class QString;
class QWidget;

namespace mirvel::ui {

/// Draws a text in the middle of a widget that has nothing else to show, large and quiet. To be called while the widget
/// is painted; an empty text draws nothing.
void drawEmptyLabel(QWidget& widget, const QString& text);

}  // namespace mirvel::ui
