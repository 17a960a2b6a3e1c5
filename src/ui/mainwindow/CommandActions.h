#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <map>
#include <string>

#include "core/mainwindow/Command.h"

class QMainWindow;
class QMenu;

namespace mirvel {
class MenuController;
}

namespace mirvel::ui {

/// Makes commands of the program available as actions of the window, for its menus and shortcuts.
class CommandActions {
 public:
  /// The window owns the actions. Both arguments must outlive this object.
  CommandActions(MenuController& menus, QMainWindow& window) : m_menus(menus), m_window(window) {}

  /// Appends a command to a menu. `symbol` names an icon, or is null.
  QAction& add(QMenu& menu, Command command, const std::string& title, const char* symbol = nullptr,
               const QList<QKeySequence>& shortcuts = {});
  /// Updates visibility, enabled state and check mark of every command.
  void validate();

 private:
  MenuController& m_menus;
  QMainWindow& m_window;
  std::map<Command, QAction*> m_actions;
};

}  // namespace mirvel::ui
