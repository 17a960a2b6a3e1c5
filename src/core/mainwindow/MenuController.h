#pragma once

#include <optional>

#include "core/mainwindow/Command.h"

namespace mirvel {

struct WindowContext;

/// The target of all menus and of the toolbar: decides which commands are available, and performs them. For the main
/// thread.
class MenuController {
 public:
  /// `context` must outlive the controller.
  explicit MenuController(const WindowContext& context) : m_context(context) {}

  bool isOffered(Command command) const;
  bool isEnabled(Command command) const { return mirvel::isEnabled(command, context()); }
  std::optional<bool> isOn(Command command) const { return mirvel::isOn(command, context()); }
  bool isShown(Command command) const { return mirvel::isShown(command, context()); }
  bool isEnabled(ToolbarItem item) const { return mirvel::isEnabled(item, context()); }
  /// A snapshot of the current state. Costs little, but querying several commands should share one.
  CommandContext context() const;

  /// Performs the command if it is offered and enabled, otherwise does nothing. Also does nothing for the submenus
  /// `Revert`, `Share` and `Columns`.
  void perform(Command command);

 private:
  const WindowContext& m_context;
};

}  // namespace mirvel
