#pragma once

#include <QMenu>
#include <QObject>
#include <vector>

#include "core/app/Program.h"
#include "ui/mainwindow/CommandActions.h"

class QMenuBar;

namespace mirvel::ui {

class DetailViewController;
class ModeTabs;

/// Builds the menu bar, and leaves out commands that aren't offered.
class MainMenu final : public QObject {
 public:
  MainMenu(Program& program, CommandActions& actions, ModeTabs& tabs, DetailViewController& details,
           QMainWindow& window);

 private:
  QMenu* addMenu(const std::string& title);
  void add(QMenu& menu, std::initializer_list<Command> commands);
  void makeFileMenu();
  void makeEditMenu();
  void makeViewMenu();
  void makeHelpMenu();
  void fillRevisions(QMenu& menu);

  Program& m_program;
  CommandActions& m_actions;
  ModeTabs& m_tabs;
  DetailViewController& m_details;
  QMainWindow& m_window;
};

/// Fills a menu with the ways to share the selected job.
void fillShareMenu(QMenu& menu, Program& program);

}  // namespace mirvel::ui
