#pragma once

#include <optional>

#include "core/mainwindow/Command.h"

namespace mirvel {

class Program;

/// The target of all menus: knows which commands there are now, and does what they say. For the main thread.
class MenuController {
 public:
  explicit MenuController(Program& program) : m_program(program) {}

  /// Whether the program can do it at all: what a command needs may not be there.
  bool isOffered(Command command) const;
  bool isEnabled(Command command) const { return mirvel::isEnabled(command, context()); }
  std::optional<bool> isOn(Command command) const { return mirvel::isOn(command, context()); }
  bool isEnabled(ToolbarItem item) const { return mirvel::isEnabled(item, context()); }
  CommandContext context() const;

  /// Does what the command says; nothing if it isn't enabled. `revert`, `share` and `columns` are submenus with items
  /// of their own.
  void perform(Command command);

 private:
  void performFile(Command command);
  void performView(Command command);
  void performHelp(Command command);
  void saveSelected();

  Program& m_program;
};

}  // namespace mirvel
