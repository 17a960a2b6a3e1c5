#pragma once

#include "core/mainwindow/JobMenu.h"

class QAbstractScrollArea;
class QMenu;
class QPoint;

namespace mirvel::ui {

/// Adds the rows of a job's menu to a menu.
void addItems(QMenu& menu, const JobMenu& items);
/// Shows the menu of a job at a position of a view's viewport; one without rows doesn't show.
void popUp(const JobMenu& items, QAbstractScrollArea& view, const QPoint& position);

}  // namespace mirvel::ui
