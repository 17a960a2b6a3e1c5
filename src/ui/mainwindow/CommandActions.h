#pragma once

#include <QAction>
#include <QKeySequence>
#include <map>
#include <string>

#include "core/mainwindow/Command.h"

class QMainWindow;

namespace mirvel {
class Localize;
class MenuController;
}  // namespace mirvel

namespace mirvel::ui {

/// Makes each command of the program available as a `QAction` of the window, for its menus and shortcuts.
class CommandActions {
 public:
  /// The window owns the actions. All arguments must outlive this object.
  CommandActions(const Localize& localize, MenuController& menus, QMainWindow& window);

  QAction* action(Command command) const { return m_actions.at(command); }
  /// Updates visibility, enabled state and check mark of every command.
  void validate();

 private:
  void add(Command command, const std::string& title, const char* symbol = nullptr,
           const QList<QKeySequence>& shortcuts = {});
  void addFileCommands();
  void addViewCommands();
  void addHelpCommands();

  const Localize& m_localize;
  MenuController& m_menus;
  QMainWindow& m_window;
  std::map<Command, QAction*> m_actions;
};

}  // namespace mirvel::ui
