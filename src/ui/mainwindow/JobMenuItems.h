#pragma once

#include "core/mainwindow/JobMenu.h"

class QMenu;

namespace mirvel::ui {

/// Adds the rows of a job's menu to a menu.
void addItems(QMenu& menu, const JobMenu& items);

}  // namespace mirvel::ui
