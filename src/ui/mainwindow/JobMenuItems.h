#pragma once

#include "core/mainwindow/JobMenu.h"

class QAbstractScrollArea;
class QMenu;
class QPoint;

namespace mirvel::ui {

/// Adds the entries of a job's menu to `menu`.
void addItems(QMenu& menu, const JobMenu& items);
/// Shows the menu of a job at a position in the viewport of `view`. Does nothing if the menu is empty.
void popUp(const JobMenu& items, QAbstractScrollArea& view, const QPoint& position);

}  // namespace mirvel::ui
