#include "ui/mainwindow/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QSessionManager>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "core/app/Termination.h"
#include "core/base/Const.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/runs/JobRuns.h"
#include "core/session/CurrentMode.h"
#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Selection.h"
#include "ui/creation/CreationSheets.h"
#include "ui/editor/DetailViewController.h"
#include "ui/mainwindow/HostLine.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/MainMenu.h"
#include "ui/mainwindow/ModeTabs.h"
#include "ui/mainwindow/Toolbar.h"
#include "ui/mainwindow/WindowFrame.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

MainWindow::MainWindow(const WindowContext& context, Termination& termination, const EditorContext& editor,
                       const MakeSheets& makeSheets)
    : m_context(context),
      m_termination(termination),
      m_actions(editor.menus, *this),
      m_sheets(makeSheets(*this)),
      m_runSheets(editor, *this) {
  setUnifiedTitleAndToolBarOnMac(true);
  makeContent(editor);
  new MainMenu(context, editor.menus, m_actions, *m_tabs, *m_details, *this);
  m_toolbar = new Toolbar(context, editor.menus, this);
  m_toolbar->filterLeft = [this] { m_tabs->setFocus(); };
  addToolBar(m_toolbar);
  enterShell(editor.icons);
  m_context.mainWindow.updateTitle();
  showMode(m_context.currentMode.chosen());
  validateVisibleItems();

  const int character = fontMetrics().averageCharWidth();
  if (!restoreFrame(*this, *m_splitter, m_context.foundation.defaults)) {
    resizeToFit(*this, QSize(192 * character, 40 * fontMetrics().lineSpacing()));
  }
  if (m_context.foundation.defaults.preferFullScreen()) setWindowState(windowState() | Qt::WindowFullScreen);
  m_tabs->setFocus();
  new TextKeys(this);
  m_runsChanged = m_context.runs.changed().subscribe([this](const Jobs& jobs) { runsChanged(jobs); });
  connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::askBeforeSessionEnds);
}

MainWindow::~MainWindow() {
  m_context.shell.mainWindow = nullptr;
  m_context.shell.terminate = nullptr;
  m_context.shell.emptyIconCache = nullptr;
}

void MainWindow::enterShell(IconLoader& icons) {
  m_context.shell.mainWindow = this;
  m_context.shell.terminate = [this] { close(); };
  m_context.shell.emptyIconCache = [&icons] { icons.clear(); };
}

void MainWindow::makeContent(const EditorContext& editor) {
  m_splitter = new QSplitter(this);
  m_splitter->setChildrenCollapsible(false);
  m_splitter->setHandleWidth(1);
  m_tabs = new ModeTabs(m_context, editor.icons);
  m_details = new DetailViewController(editor);
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
  layout->addWidget(new HostLine(m_context.foundation.localize, m_context.hostStart, m_context.notifications));
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
  about->setInformativeText(qt(WindowTexts(m_context.foundation.localize).aboutText()));
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

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  updateVisibility();
}

void MainWindow::hideEvent(QHideEvent* event) {
  QMainWindow::hideEvent(event);
  updateVisibility();
}

void MainWindow::updateVisibility() {
  m_context.runs.setWindowVisible(isVisible() && !isMinimized());
}

/// Which commands are available depends on the state of the selected job.
void MainWindow::runsChanged(const Jobs& jobs) {
  const auto selected = m_context.selection.job();
  const auto isSelected = [&](const auto& job) { return job->url.equalTo(selected->url); };
  if (selected && std::any_of(jobs.begin(), jobs.end(), isSelected)) validateVisibleItems();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(m_termination.applicationShouldTerminate());
  if (event->isAccepted()) saveFrame(*this, *m_splitter, m_context.foundation.defaults);
}

void MainWindow::askBeforeSessionEnds(QSessionManager& session) {
  if (!session.allowsInteraction()) return m_termination.keepEdit();  // the desktop doesn't wait for an answer
  if (m_termination.sessionMayEnd()) {
    session.release();
  } else {
    session.cancel();
  }
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && isVisible()) {
    m_context.mainWindow.fullScreenDidChange(isFullScreen());
  }
  if (event->type() == QEvent::WindowStateChange) updateVisibility();
  if (event->type() == QEvent::ActivationChange) m_context.notifications.appStatusChanged.post();
}

}  // namespace mirvel::ui
