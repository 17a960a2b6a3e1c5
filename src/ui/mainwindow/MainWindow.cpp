#include "ui/mainwindow/MainWindow.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>

#include "core/mainwindow/ModeFilter.h"
#include "ui/editor/DetailPane.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/MainMenu.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// Names for the ear what Qt put into a widget by itself: the buttons without a text.
void nameButtons(const QWidget& owner, const QString& name) {
  for (auto* button : owner.findChildren<QToolButton*>()) {
    if (button->text().isEmpty() && button->accessibleName().isEmpty()) button->setAccessibleName(name);
  }
}

}  // namespace

MainWindow::MainWindow(Program& program, IconLoader& icons)
    : m_program(program), m_menu(nullptr), m_listMode(nullptr), m_filter(nullptr) {
  setUnifiedTitleAndToolBarOnMac(true);
  makeContent(icons);
  m_menu = new MainMenu(program, *this, icons);
  makeToolbar();
  m_program.shell.mainWindow = this;
  m_program.shell.terminate = [this] { close(); };
  m_program.mainWindow.updateTitle();
  validateVisibleItems();
  const int character = fontMetrics().averageCharWidth();
  resize(170 * character, 38 * fontMetrics().lineSpacing());
  m_listMode->setFocus();
}

MainWindow::~MainWindow() {
  m_program.shell.mainWindow = nullptr;
  m_program.shell.terminate = nullptr;
}

void MainWindow::makeContent(IconLoader& icons) {
  auto* splitter = new QSplitter(this);
  splitter->setChildrenCollapsible(false);
  splitter->setHandleWidth(1);
  m_listMode = new ListModeView(m_program, icons);
  auto* detail = new DetailPane(m_program, icons);
  const int character = fontMetrics().averageCharWidth();
  m_listMode->setMinimumWidth(24 * character);
  detail->setMinimumWidth(32 * character);
  splitter->addWidget(m_listMode);
  splitter->addWidget(detail);
  splitter->setStretchFactor(0, 2);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({116 * character, 54 * character});
  setCentralWidget(splitter);
}

void MainWindow::makeToolbar() {
  auto* toolbar = new QToolBar(qt(m_program.foundation.localize.toolbar()), this);
  nameButtons(*toolbar, toolbar->windowTitle());  // shows what has no room
  toolbar->setMovable(false);
  toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
  toolbar->addAction(m_menu->refresh());
  auto* space = new QWidget;
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  toolbar->addWidget(space);

  m_filter = new QLineEdit;
  const QString name = qt(m_program.foundation.localize.filter());
  m_filter->setPlaceholderText(name);
  m_filter->setAccessibleName(name);
  m_filter->setClearButtonEnabled(true);
  nameButtons(*m_filter, qt(m_program.foundation.localize.cancel()));
  m_filter->addAction(IconLoader::symbol("edit-find"), QLineEdit::LeadingPosition);
  nameButtons(*m_filter, name);
  m_filter->setMaximumWidth(36 * fontMetrics().averageCharWidth());
  connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (ModeType* mode = m_program.currentMode()) modeFilter(m_program, *mode, m_program.state.jobs, utf8(text));
  });
  auto* escape = new QShortcut(Qt::Key_Escape, m_filter, nullptr, nullptr, Qt::WidgetShortcut);
  connect(escape, &QShortcut::activated, this, &MainWindow::endFilter);
  toolbar->addWidget(m_filter);
  addToolBar(toolbar);
}

void MainWindow::endFilter() {
  if (m_filter->text().isEmpty()) {
    m_listMode->setFocus();
  } else {
    m_filter->clear();
  }
}

void MainWindow::setTitle(const std::string& title) {
  const QString mark = QStringLiteral("[*]");  // stands for the sign of unsaved changes, and twice for itself
  setWindowTitle(qt(title).replace(mark, mark + mark) + mark);
}

void MainWindow::setEdited(bool isEdited) {
  setWindowModified(isEdited);
  validateVisibleItems();  // told at each change of the selection: shortcuts work without the menu having been opened
}

void MainWindow::validateVisibleItems() {
  m_menu->validate();
  m_filter->setEnabled(!m_program.state.hasUnsavedChanges);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(m_program.appDelegate.applicationShouldTerminate());
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::ActivationChange) return;
  if (isActiveWindow()) {
    m_program.appDelegate.applicationDidBecomeActive();
  } else {
    m_program.appDelegate.applicationDidResignActive();
  }
}

}  // namespace mirvel::ui
