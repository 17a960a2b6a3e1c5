#pragma once

#include <QMenu>

#include "core/app/Program.h"

namespace mirvel::ui {

class DetailViewController;

/// Adds the text commands (undo, cut, paste, ...) to a menu. They act on the focused text widget; in the fields of the
/// editor, undo and redo go to the editor. `program` and `details` must outlive the menu.
void addEditActions(QMenu& menu, Program& program, const DetailViewController& details);

}  // namespace mirvel::ui
