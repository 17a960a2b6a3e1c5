#pragma once

#include <QIcon>
#include <QString>

class QPainter;
class QRect;
class QWidget;

namespace mirvel::ui {

/// The header data of a group of the grid.
struct GridGroup {
  QString title;
  QIcon icon;
  int count = 0;  ///< number of items
};

/// The height of a group header in pixels, for the font and style of `widget`.
int groupHeaderHeight(const QWidget& widget);
/// Draws a group header with an opaque background. `isPinned` marks a header that stays on top while items scroll below
/// it.
void drawGroupHeader(QPainter& painter, const QWidget& widget, const QRect& rect, const GridGroup& group,
                     bool isPinned);

}  // namespace mirvel::ui
