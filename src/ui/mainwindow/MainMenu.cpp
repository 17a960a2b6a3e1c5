#include "ui/mainwindow/MainMenu.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>

#include "core/support/Const.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/MainWindow.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

MainMenu::MainMenu(Program& program, MainWindow& window, IconLoader& icons)
    : QObject(&window), m_program(program), m_window(window), m_icons(icons) {
  makeFileMenu();
  makeEditMenu();
  makeViewMenu();
  makeHelpMenu();
  for (QMenu* menu : window.menuBar()->findChildren<QMenu*>()) menu->setAccessibleName(menu->title());
}

void MainMenu::makeFileMenu() {
  const Localize& localize = m_program.foundation.localize;
  QMenu* menu = m_window.menuBar()->addMenu(qt(localize.mainMenu().file()));
  m_refresh = menu->addAction(IconLoader::symbol("view-refresh"), qt(localize.mainMenu().refresh()), this, [this] {
    m_icons.clear();
    m_program.mainWindow.refresh();
  });
  m_refresh->setShortcuts({QKeySequence(QKeySequence::Refresh), QKeySequence(Qt::CTRL | Qt::Key_R)});
  m_reveal = menu->addAction(IconLoader::symbol("folder-open"), qt(localize.revealInFinder()), this,
                             [this] { m_program.mainWindow.revealSelected(); });
  m_reveal->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_R);
  menu->addSeparator();
  QAction* quit = menu->addAction(IconLoader::symbol("application-exit"), qt(localize.mainMenu().quit()), &m_window,
                                  &QWidget::close);
  quit->setShortcut(QKeySequence::Quit);
  quit->setMenuRole(QAction::QuitRole);
  connect(menu, &QMenu::aboutToShow, this, &MainMenu::validate);
}

void MainMenu::makeEditMenu() {
  const auto texts = m_program.foundation.localize.mainMenu();
  QMenu* menu = m_window.menuBar()->addMenu(qt(texts.edit()));
  QAction* filter = menu->addAction(IconLoader::symbol("edit-find"), qt(texts.filter()), this, [this] {
    m_window.filter().setFocus(Qt::ShortcutFocusReason);
    m_window.filter().selectAll();
  });
  filter->setShortcut(QKeySequence::Find);
}

void MainMenu::makeViewMenu() {
  const auto texts = m_program.foundation.localize.mainMenu();
  QMenu* menu = m_window.menuBar()->addMenu(qt(texts.view()));
  m_systemJobs = menu->addAction(qt(texts.systemJobs()), this, [this] { m_program.mainWindow.toggleSystemJobs(); });
  m_systemJobs->setCheckable(true);
  QMenu* columns = menu->addMenu(qt(texts.columns()));
  connect(columns, &QMenu::aboutToShow, this, [this, columns] {
    columns->clear();
    m_window.listMode().addColumnItems(*columns);
  });
  connect(menu, &QMenu::aboutToShow, this, &MainMenu::validate);
}

void MainMenu::makeHelpMenu() {
  const auto texts = m_program.foundation.localize.mainMenu();
  QMenu* menu = m_window.menuBar()->addMenu(qt(texts.help()));
  menu->addAction(qt(texts.site()), this,
                  [this] { m_program.platform.workspace.openAddress(std::string(Const::siteURL)); });
  menu->addSeparator();
  QAction* about = menu->addAction(IconLoader::symbol("help-about"), qt(texts.about()), this, &MainMenu::showAbout);
  about->setMenuRole(QAction::AboutRole);
}

void MainMenu::validate() {
  m_refresh->setEnabled(m_program.mainWindow.canRefresh());
  m_reveal->setEnabled(m_program.mainWindow.canRevealSelected());
  m_systemJobs->setEnabled(m_program.mainWindow.canRefresh());
  m_systemJobs->setChecked(m_program.foundation.defaults.showSystemJobs());
}

void MainMenu::showAbout() {
  const Localize& localize = m_program.foundation.localize;
  auto* about = new QMessageBox(&m_window);
  about->setAttribute(Qt::WA_DeleteOnClose);
  about->setIconPixmap(QApplication::windowIcon().pixmap(64));
  about->setText(qt(Const::AppName::mirvel) + QLatin1Char(' ') + QApplication::applicationVersion());
  about->setInformativeText(qt(localize.aboutText()));
  about->open();
}

}  // namespace mirvel::ui
