#pragma once

#include <QMenu>

#include "core/support/Localize.h"

namespace mirvel::ui {

/// Adds the commands on text to a menu. They go to the text widget that has the focus.
void addEditActions(QMenu& menu, const Localize& localize);

}  // namespace mirvel::ui
