#pragma once

#include <QObject>

#include "core/app/Program.h"
#include "ui/support/IconLoader.h"

class QAction;
class QMenu;

namespace mirvel::ui {

class MainWindow;

/// The menu bar and its commands.
class MainMenu final : public QObject {
 public:
  MainMenu(Program& program, MainWindow& window, IconLoader& icons);

  QAction* refresh() const { return m_refresh; }
  /// Enables each command by the program's state.
  void validate();

 private:
  void makeFileMenu();
  void makeEditMenu();
  void makeViewMenu();
  void makeHelpMenu();
  void showAbout();

  Program& m_program;
  MainWindow& m_window;
  IconLoader& m_icons;
  QAction* m_refresh = nullptr;
  QAction* m_reveal = nullptr;
  QAction* m_systemJobs = nullptr;
};

}  // namespace mirvel::ui
