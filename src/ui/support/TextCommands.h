#pragma once

#include <QKeySequence>
#include <string>
#include <vector>

#include "core/locale/Localize.h"

class QAction;
class QMenu;

namespace mirvel::ui {

/// A command that every text widget has.
struct TextCommand {
  std::string title;
  const char* slot;  ///< slot of the text widget
  QKeySequence::StandardKey key;
  const char* symbol = nullptr;
};

/// Undo, Redo, Cut, Copy, Paste and Select All, in this order.
std::vector<TextCommand> textCommands(const Localize& localize);

/// Adds a command to a menu, with a separator after Redo. The shortcut is only displayed, because text widgets handle
/// it themselves.
QAction* addTextCommand(QMenu& menu, const TextCommand& command);

}  // namespace mirvel::ui
