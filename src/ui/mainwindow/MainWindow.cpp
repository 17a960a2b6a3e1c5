#include "ui/mainwindow/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QSessionManager>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/base/Const.h"
#include "core/mainwindow/WindowTexts.h"
#include "ui/editor/DetailViewController.h"
#include "ui/mainwindow/HostLine.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/MainMenu.h"
#include "ui/mainwindow/ModeTabs.h"
#include "ui/mainwindow/Toolbar.h"
#include "ui/mainwindow/WindowFrame.h"
#include "ui/support/QtText.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

MainWindow::MainWindow(Program& program, IconLoader& icons)
    : m_program(program), m_actions(program, *this), m_sheets(program, icons, *this) {
  setUnifiedTitleAndToolBarOnMac(true);
  makeContent(icons);
  new MainMenu(program, m_actions, *m_tabs, *m_details, *this);
  m_toolbar = new Toolbar(program, this);
  m_toolbar->filterLeft = [this] { m_tabs->setFocus(); };
  addToolBar(m_toolbar);
  enterShell(icons);
  m_program.mainWindow.updateTitle();
  showMode(m_program.currentMode.chosen());
  validateVisibleItems();

  const int character = fontMetrics().averageCharWidth();
  if (!restoreFrame(*this, *m_splitter, m_program.foundation.defaults)) {
    resizeToFit(*this, QSize(192 * character, 40 * fontMetrics().lineSpacing()));
  }
  if (m_program.foundation.defaults.preferFullScreen()) setWindowState(windowState() | Qt::WindowFullScreen);
  m_tabs->setFocus();
  new TextKeys(this);
  connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::askBeforeSessionEnds);
}

MainWindow::~MainWindow() {
  m_program.shell.mainWindow = nullptr;
  m_program.shell.terminate = nullptr;
  m_program.shell.emptyIconCache = nullptr;
}

void MainWindow::enterShell(IconLoader& icons) {
  m_program.shell.mainWindow = this;
  m_program.shell.terminate = [this] { close(); };
  m_program.shell.emptyIconCache = [&icons] { icons.clear(); };
}

void MainWindow::makeContent(IconLoader& icons) {
  m_splitter = new QSplitter(this);
  m_splitter->setChildrenCollapsible(false);
  m_splitter->setHandleWidth(1);
  m_tabs = new ModeTabs(m_program, icons);
  m_details = new DetailViewController({.foundation = m_program.foundation,
                                        .platform = m_program.platform,
                                        .saving = m_program.saving,
                                        .scanning = m_program.scanning,
                                        .selection = m_program.selection,
                                        .notifications = m_program.notifications,
                                        .shell = m_program.shell,
                                        .editing = m_program.editing,
                                        .actions = m_program.actions,
                                        .fetcher = m_program.fetcher,
                                        .mainWindow = m_program.mainWindow,
                                        .menus = m_program.menus,
                                        .kinds = m_program.kinds,
                                        .repairs = m_program.repairs,
                                        .schedules = m_program.scheduledController,
                                        .notes = m_program.notes,
                                        .iconEditing = m_program.icons,
                                        .icons = icons});
  m_details->focusLeft = [this] { m_tabs->setFocus(); };
  const int character = fontMetrics().averageCharWidth();
  m_tabs->setMinimumWidth(24 * character);
  m_splitter->addWidget(m_tabs);
  m_splitter->addWidget(m_details);
  m_splitter->setStretchFactor(0, 2);
  m_splitter->setStretchFactor(1, 1);
  m_splitter->setSizes({127 * character, 64 * character});
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(m_splitter, 1);
  layout->addWidget(new HostLine(m_program));
  setCentralWidget(content);
}

ListModeView& MainWindow::listMode() {
  return m_tabs->listMode();
}

QLineEdit& MainWindow::filter() {
  return m_toolbar->filter();
}

void MainWindow::setTitle(const std::string& title) {
  m_title = title;
  showTitle();
}

void MainWindow::setTitleVisible(bool isVisible) {
  m_isTitleVisible = isVisible;
  showTitle();
}

/// Window managers need a title, so a hidden one is replaced by the name of the application.
void MainWindow::showTitle() {
  // Qt replaces this placeholder by the mark of unsaved changes. In a title it is escaped by doubling.
  const QString mark = QStringLiteral("[*]");
  const std::string shown = m_isTitleVisible ? m_title : std::string(Const::AppName::mirvel);
  setWindowTitle(qt(shown).replace(mark, mark + mark) + mark);
}

void MainWindow::setEdited(bool isEdited) {
  setWindowModified(isEdited);
  validateVisibleItems();  // also called when the selection changes: shortcuts must work before a menu has been opened
}

void MainWindow::validateVisibleItems() {
  m_actions.validate();
  m_toolbar->validate();
}

void MainWindow::showMode(Mode mode) {
  m_tabs->show(mode);
  m_toolbar->mark(mode);
}

void MainWindow::clearFilter() {
  m_toolbar->clearFilter();
}

void MainWindow::focusOnFilter() {
  filter().setFocus(Qt::ShortcutFocusReason);
  filter().selectAll();
}

bool MainWindow::hasFilterField() const {
  return m_toolbar && m_toolbar->isVisibleTo(this);
}

bool MainWindow::hasSheet() const {
  const auto dialogs = findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
  return std::any_of(dialogs.begin(), dialogs.end(), [](const QDialog* dialog) { return dialog->isVisible(); });
}

void MainWindow::toggleFullScreen() {
  setWindowState(windowState() ^ Qt::WindowFullScreen);
}

void MainWindow::showAbout() {
  auto* about = new QMessageBox(this);
  about->setAttribute(Qt::WA_DeleteOnClose);
  about->setIconPixmap(QApplication::windowIcon().pixmap(64));
  about->setText(qt(Const::AppName::mirvel) + QLatin1Char(' ') + QApplication::applicationVersion());
  about->setInformativeText(qt(WindowTexts(m_program.foundation.localize).aboutText()));
  about->open();
}

bool MainWindow::event(QEvent* event) {
  // Commands are disabled while a sheet is open. The sheet still exists during this event, so validation has to wait.
  if (event->type() == QEvent::WindowUnblocked) {
    QMetaObject::invokeMethod(
        this, [this] { validateVisibleItems(); }, Qt::QueuedConnection);
  }
  return QMainWindow::event(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(m_program.appDelegate.applicationShouldTerminate());
  if (event->isAccepted()) saveFrame(*this, *m_splitter, m_program.foundation.defaults);
}

void MainWindow::askBeforeSessionEnds(QSessionManager& session) {
  if (!session.allowsInteraction()) return m_program.appDelegate.keepEdit();  // the desktop doesn't wait for an answer
  if (m_program.mainWindow.sessionMayEnd()) {
    session.release();
  } else {
    session.cancel();
  }
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && isVisible()) {
    m_program.mainWindow.fullScreenDidChange(isFullScreen());
  }
  if (event->type() != QEvent::ActivationChange) return;
  if (isActiveWindow()) {
    m_program.appDelegate.applicationDidBecomeActive();
  } else {
    m_program.appDelegate.applicationDidResignActive();
  }
}

}  // namespace mirvel::ui
