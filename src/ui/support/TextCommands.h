#pragma once

#include <QKeySequence>
#include <string>
#include <vector>

#include "core/locale/Localize.h"

class QAction;
class QMenu;

namespace mirvel::ui {

/// A command that every text widget knows.
struct TextCommand {
  std::string title;
  const char* slot;  ///< of the widget
  QKeySequence::StandardKey key;
  const char* symbol = nullptr;
};

/// From Undo to Select All.
std::vector<TextCommand> textCommands(const Localize& localize);

/// Adds a command to a menu, and a separator behind Redo. Its key is only shown: text widgets take it by themselves.
QAction* addTextCommand(QMenu& menu, const TextCommand& command);

}  // namespace mirvel::ui
