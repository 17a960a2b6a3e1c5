#pragma once

#include <QObject>
#include <string>

class QMainWindow;
class QMenu;

namespace mirvel {
class MenuController;
struct WindowContext;
}  // namespace mirvel

namespace mirvel::ui {

class CommandActions;
class DetailViewController;
class ModeTabs;

/// Builds the menu bar, and leaves out commands that aren't offered.
class MainMenu final : public QObject {
 public:
  /// Becomes a child of the window. The other arguments must outlive the window.
  MainMenu(const WindowContext& context, const MenuController& menus, CommandActions& actions, ModeTabs& tabs,
           const DetailViewController& details, QMainWindow& window);

 private:
  QMenu* addMenu(const std::string& title);
  void makeFileMenu();
  void makeEditMenu();
  void makeViewMenu();
  void addColumnsMenu(QMenu& menu, const std::string& title);
  void makeHelpMenu();
  void fillRevisions(QMenu& menu);

  const WindowContext& m_context;
  const MenuController& m_menus;
  CommandActions& m_actions;
  ModeTabs& m_tabs;
  const DetailViewController& m_details;
  QMainWindow& m_window;
};

/// Fills a menu with the ways to share the selected job. `context` must outlive the menu.
void fillShareMenu(QMenu& menu, const WindowContext& context);

}  // namespace mirvel::ui
