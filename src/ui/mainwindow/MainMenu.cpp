#include "ui/mainwindow/MainMenu.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>

#include "core/mainwindow/MainMenuTexts.h"
#include "core/mainwindow/RevisionMenu.h"
#include "core/mainwindow/ShareItems.h"
#include "core/mainwindow/WindowTexts.h"
#include "ui/mainwindow/EditActions.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/ModeTabs.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

MainMenu::MainMenu(Program& program, CommandActions& actions, ModeTabs& tabs, DetailViewController& details,
                   QMainWindow& window)
    : QObject(&window), m_program(program), m_actions(actions), m_tabs(tabs), m_details(details), m_window(window) {
  makeFileMenu();
  makeEditMenu();
  makeViewMenu();
  makeHelpMenu();
  for (QMenu* menu : window.menuBar()->findChildren<QMenu*>()) menu->setAccessibleName(menu->title());
}

QMenu* MainMenu::addMenu(const std::string& title) {
  QMenu* menu = m_window.menuBar()->addMenu(qt(title));
  connect(menu, &QMenu::aboutToShow, this, [this] { m_actions.validate(); });
  return menu;
}

void MainMenu::add(QMenu& menu, std::initializer_list<Command> commands) {
  for (const Command command : commands) menu.addAction(m_actions.action(command));
}

void MainMenu::makeFileMenu() {
  const auto texts = MainMenuTexts(m_program.foundation.localize);
  QMenu* menu = addMenu(texts.file());
  add(*menu, {Command::new_, Command::importAction});
  menu->addSeparator();
  add(*menu, {Command::edit, Command::save});
  QMenu* revisions = menu->addMenu(qt(texts.revisions()));
  add(*menu, {Command::duplicate, Command::export_});
  QMenu* share = menu->addMenu(IconLoader::symbol("document-send"), qt(texts.share()));
  add(*menu, {Command::delete_, Command::restoreDeleted});
  menu->addSeparator();
  add(*menu, {Command::test, Command::log, Command::info, Command::revealInFinder});
  menu->addSeparator();
  add(*menu, {Command::refresh});
  menu->addSeparator();
  QAction* quit = menu->addAction(IconLoader::symbol("application-exit"), qt(texts.quit()), &m_window, &QWidget::close);
  quit->setShortcut(QKeySequence::Quit);
  quit->setMenuRole(QAction::QuitRole);

  connect(menu, &QMenu::aboutToShow, this, [this, revisions, share] {
    const MenuController& menus = m_program.menus;
    share->menuAction()->setEnabled(menus.isEnabled(Command::share));
    revisions->menuAction()->setVisible(menus.isOffered(Command::revert));
    revisions->menuAction()->setEnabled(menus.isEnabled(Command::revert));
  });
  connect(share, &QMenu::aboutToShow, this, [this, share] { fillShareMenu(*share, m_program); });
  connect(revisions, &QMenu::aboutToShow, this, [this, revisions] { fillRevisions(*revisions); });
}

void MainMenu::fillRevisions(QMenu& menu) {
  menu.clear();
  for (const RevisionItem& item : revisionItems(m_program.windowContext)) {
    menu.addAction(qt(item.title), this,
                   [this, revision = item.revision] { insertRevision(m_program.windowContext, revision); });
  }
  menu.addSeparator();
  menu.addAction(qt(WindowTexts(m_program.foundation.localize).deleteRevisions()), this,
                 [this] { confirmDeleteRevisions(m_program.windowContext); });
}

void MainMenu::makeEditMenu() {
  QMenu* menu = addMenu(MainMenuTexts(m_program.foundation.localize).edit());
  addEditActions(*menu, m_program, m_details);
  menu->addSeparator();
  add(*menu, {Command::filter});
}

void MainMenu::makeViewMenu() {
  const auto texts = MainMenuTexts(m_program.foundation.localize);
  QMenu* menu = addMenu(texts.view());
  add(*menu, {Command::grid, Command::tree, Command::list, Command::timeline});
  menu->addSeparator();
  add(*menu, {Command::system});
  QMenu* columns = menu->addMenu(qt(texts.columns()));
  connect(columns, &QMenu::aboutToShow, this, [this, columns] {
    columns->clear();
    m_tabs.listMode().addColumnItems(*columns);
  });
  connect(menu, &QMenu::aboutToShow, this,
          [this, columns] { columns->menuAction()->setEnabled(m_program.menus.isEnabled(Command::columns)); });
  menu->addSeparator();
  add(*menu, {Command::titleBar, Command::fullScreen});
}

void MainMenu::makeHelpMenu() {
  QMenu* menu = addMenu(MainMenuTexts(m_program.foundation.localize).help());
  add(*menu, {Command::help, Command::manLaunchdplist, Command::site, Command::mailSupport});
  menu->addSeparator();
  add(*menu, {Command::checkForUpdates, Command::about});
}

void fillShareMenu(QMenu& menu, Program& program) {
  menu.clear();
  const auto items = shareItems(program.selection);
  if (!items) return;
  for (const SharingService& service : sharingServices(*items, program.foundation.localize)) {
    const char* symbol = service.way == SharingService::Way::Copy   ? "edit-copy"
                         : service.way == SharingService::Way::Mail ? "mail-send"
                                                                    : "document-open";
    menu.addAction(IconLoader::symbol(symbol), qt(service.title),
                   [&program, way = service.way, items] { share(program.platform.workspace, way, *items); });
  }
}

}  // namespace mirvel::ui
