#pragma once

#include <QMenu>

#include "core/app/Program.h"

namespace mirvel::ui {

class DetailViewController;

/// Adds the commands on text to a menu. They go to the text widget that has the focus; for the fields of the editor it
/// is the editor that undoes. Program and details outlive the menu.
void addEditActions(QMenu& menu, Program& program, const DetailViewController& details);

}  // namespace mirvel::ui
