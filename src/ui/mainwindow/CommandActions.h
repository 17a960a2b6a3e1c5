#pragma once

#include <QAction>
#include <map>

#include "core/app/Program.h"
#include "core/mainwindow/Command.h"

class QMainWindow;

namespace mirvel::ui {

/// The commands of the program as actions of the window, by which they can be chosen from menus and by shortcuts.
class CommandActions {
 public:
  CommandActions(Program& program, QMainWindow& window);

  QAction* action(Command command) const { return m_actions.at(command); }
  /// Shows, enables and ticks each command by its rules.
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
