#pragma once

#include <optional>

#include "core/mainwindow/Command.h"

namespace mirvel {

struct WindowContext;

/// The target of all menus: decides which commands are available, and performs them. For the main thread.
class MenuController {
 public:
  explicit MenuController(const WindowContext& context) : m_context(context) {}

  /// Whether the command exists at all: what it needs may not be registered.
  bool isOffered(Command command) const;
  bool isEnabled(Command command) const { return mirvel::isEnabled(command, context()); }
  std::optional<bool> isOn(Command command) const { return mirvel::isOn(command, context()); }
  bool isEnabled(ToolbarItem item) const { return mirvel::isEnabled(item, context()); }
  CommandContext context() const;

  /// Performs the command if it is enabled. `revert`, `share` and `columns` are submenus with items of their own.
  void perform(Command command);

 private:
  void performFile(Command command);
  void performView(Command command);
  void performHelp(Command command);
  void saveSelected();

  const WindowContext& m_context;
};

}  // namespace mirvel
