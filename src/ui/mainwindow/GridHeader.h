#pragma once

#include <QIcon>
#include <QString>

class QPainter;
class QRect;
class QWidget;

namespace mirvel::ui {

/// A group of the grid.
struct GridGroup {
  QString title;
  QIcon icon;
  int count = 0;  ///< of items
};

/// How high a header is in a widget, in pixels.
int groupHeaderHeight(const QWidget& widget);
/// Draws the header of a group over whatever is there, as part of a widget. With `isPinned` items run below it.
void drawGroupHeader(QPainter& painter, const QWidget& widget, const QRect& rect, const GridGroup& group,
                     bool isPinned);

}  // namespace mirvel::ui
