#pragma once

#include <QAction>
#include <map>

#include "core/app/Program.h"
#include "core/mainwindow/Command.h"

class QMainWindow;

namespace mirvel::ui {

/// Makes each command of the program available as a `QAction` of the window, for its menus and shortcuts.
class CommandActions {
 public:
  CommandActions(Program& program, QMainWindow& window);

  QAction* action(Command command) const { return m_actions.at(command); }
  /// Updates visibility, enabled state and check mark of every command.
  void validate();

 private:
  void add(Command command, const std::string& title, const char* symbol = nullptr,
           const QList<QKeySequence>& shortcuts = {});
  void addFileCommands();
  void addViewCommands();
  void addHelpCommands();

  Program& m_program;
  QMainWindow& m_window;
  std::map<Command, QAction*> m_actions;
};

}  // namespace mirvel::ui
