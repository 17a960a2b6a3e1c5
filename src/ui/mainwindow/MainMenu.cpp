#include "ui/mainwindow/MainMenu.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QMetaObject>

#include "core/mainwindow/MainMenuTexts.h"
#include "core/mainwindow/MenuController.h"
#include "core/mainwindow/RevisionMenu.h"
#include "core/mainwindow/ShareItems.h"
#include "core/mainwindow/WindowContext.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "ui/editor/DetailViewController.h"
#include "ui/editor/LaunchdEditViewController.h"
#include "ui/mainwindow/CommandActions.h"
#include "ui/mainwindow/ListModeView.h"
#include "ui/mainwindow/ModeTabs.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

namespace {

/// The desktop's full-screen shortcuts. On a desktop for which Qt defines none, F11.
QList<QKeySequence> fullScreenKeys() {
  const QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::FullScreen);
  return keys.isEmpty() ? QList<QKeySequence>{QKeySequence(Qt::Key_F11)} : keys;
}

/// The method of `Editing` for a text command; null if the command doesn't concern undo.
using EditingCommand = void (Editing::*)();

EditingCommand editingCommand(QKeySequence::StandardKey key) {
  if (key == QKeySequence::Undo) return &Editing::undo;
  return key == QKeySequence::Redo ? &Editing::redo : nullptr;
}

bool accepts(const QWidget* widget, const char* slot) {
  return widget && widget->metaObject()->indexOfMethod((QByteArray(slot) + "()").constData()) >= 0;
}

/// Whether undo in the focused widget is handled by the editor rather than by the widget itself.
bool editorUndoes(const DetailViewController& details) {
  const QWidget* const focus = QApplication::focusWidget();
  return focus && details.editor().undoesFor(*focus);
}

bool isEnabled(const TextCommand& command, Editing& editing, const DetailViewController& details) {
  if (!editingCommand(command.key) || !editorUndoes(details)) return accepts(QApplication::focusWidget(), command.slot);
  return command.key == QKeySequence::Undo ? editing.canUndo() : editing.canRedo();
}

void perform(const TextCommand& command, Editing& editing, const DetailViewController& details) {
  const EditingCommand undoes = editingCommand(command.key);
  if (undoes && editorUndoes(details)) return (editing.*undoes)();
  QWidget* const widget = QApplication::focusWidget();
  if (accepts(widget, command.slot)) QMetaObject::invokeMethod(widget, command.slot);
}

/// Adds the text commands (undo, cut, paste, ...) to a menu. They act on the focused text widget; in the fields of the
/// editor, undo and redo go to the editor.
void addEditActions(QMenu& menu, const Localize& localize, Editing& editing, const DetailViewController& details) {
  for (const TextCommand& command : textCommands(localize)) {
    QAction* action = addTextCommand(menu, command);
    QObject::connect(action, &QAction::triggered, &menu, [&, command] { perform(command, editing, details); });
    QObject::connect(&menu, &QMenu::aboutToShow, action,
                     [&, command, action] { action->setEnabled(isEnabled(command, editing, details)); });
  }
}

}  // namespace

MainMenu::MainMenu(const WindowContext& context, const MenuController& menus, CommandActions& actions, ModeTabs& tabs,
                   const DetailViewController& details, QMainWindow& window)
    : QObject(&window),
      m_context(context),
      m_menus(menus),
      m_actions(actions),
      m_tabs(tabs),
      m_details(details),
      m_window(window) {
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

void MainMenu::makeFileMenu() {
  const auto texts = MainMenuTexts(m_context.foundation.localize);
  QMenu* menu = addMenu(texts.file());
  m_actions.add(*menu, Command::New, texts.newJob(), "list-add", {QKeySequence::New});
  m_actions.add(*menu, Command::Import, texts.importJob(), "document-open", {QKeySequence::Open});
  m_actions.add(*menu, Command::EditScript, texts.editScript(), nullptr, {Qt::CTRL | Qt::SHIFT | Qt::Key_O});
  menu->addSeparator();
  m_actions.add(*menu, Command::Edit, texts.editJob(), "document-edit", {Qt::CTRL | Qt::Key_E});
  m_actions.add(*menu, Command::Save, texts.save(), "document-save", {QKeySequence::Save});
  QMenu* revisions = menu->addMenu(qt(texts.revisions()));
  m_actions.add(*menu, Command::Duplicate, texts.duplicate(), "edit-copy", {Qt::CTRL | Qt::Key_D});
  m_actions.add(*menu, Command::Export, texts.exportJob(), nullptr, {Qt::CTRL | Qt::SHIFT | Qt::Key_S});
  QMenu* share = menu->addMenu(IconLoader::symbol("document-send"), qt(texts.share()));
  m_actions.add(*menu, Command::Delete, texts.delete_(), "edit-delete",
                {Qt::CTRL | Qt::Key_Backspace, QKeySequence::Delete});
  m_actions.add(*menu, Command::RestoreDeleted, texts.restoreDeleted());
  menu->addSeparator();
  menu->setToolTipsVisible(true);  // why a command is disabled
  m_actions.add(*menu, Command::RunNow, texts.runNow(), "media-playback-start", {Qt::CTRL | Qt::Key_G});
  m_actions.add(*menu, Command::Stop, texts.stop(), "media-playback-stop", {Qt::CTRL | Qt::Key_Period});
  m_actions.add(*menu, Command::Restart, texts.restart(), "view-refresh", {Qt::CTRL | Qt::SHIFT | Qt::Key_G});
  m_actions.add(*menu, Command::Disable, texts.disable());
  m_actions.add(*menu, Command::Test, texts.test(), "mirvel-flask", {Qt::CTRL | Qt::Key_T});
  m_actions.add(*menu, Command::Log, texts.log(), "text-x-log", {Qt::CTRL | Qt::Key_L});
  m_actions.add(*menu, Command::Info, texts.info(), "document-properties", {Qt::CTRL | Qt::Key_I});
  m_actions.add(*menu, Command::RevealInFinder, m_context.foundation.localize.revealInFinder(), "folder-open",
                {Qt::CTRL | Qt::SHIFT | Qt::Key_R});
  menu->addSeparator();
  m_actions.add(*menu, Command::Refresh, texts.refresh(), "view-refresh",
                {QKeySequence::Refresh, Qt::CTRL | Qt::Key_R});
  menu->addSeparator();
  QAction* quit = menu->addAction(IconLoader::symbol("application-exit"), qt(texts.quit()), &m_window, &QWidget::close);
  quit->setShortcut(QKeySequence::Quit);
  quit->setMenuRole(QAction::QuitRole);

  connect(menu, &QMenu::aboutToShow, this, [this, revisions, share] {
    share->menuAction()->setEnabled(m_menus.isEnabled(Command::Share));
    revisions->menuAction()->setVisible(m_menus.isOffered(Command::Revert));
    revisions->menuAction()->setEnabled(m_menus.isEnabled(Command::Revert));
  });
  connect(share, &QMenu::aboutToShow, this, [this, share] { fillShareMenu(*share, m_context); });
  connect(revisions, &QMenu::aboutToShow, this, [this, revisions] { fillRevisions(*revisions); });
}

void MainMenu::fillRevisions(QMenu& menu) {
  menu.clear();
  for (const RevisionItem& item : revisionItems(m_context)) {
    menu.addAction(qt(item.title), this, [this, revision = item.revision] { insertRevision(m_context, revision); });
  }
  menu.addSeparator();
  menu.addAction(qt(WindowTexts(m_context.foundation.localize).deleteRevisions()), this,
                 [this] { confirmDeleteRevisions(m_context); });
}

void MainMenu::makeEditMenu() {
  const auto texts = MainMenuTexts(m_context.foundation.localize);
  QMenu* menu = addMenu(texts.edit());
  addEditActions(*menu, m_context.foundation.localize, m_context.editing, m_details);
  menu->addSeparator();
  m_actions.add(*menu, Command::Filter, texts.filter(), "edit-find", {QKeySequence::Find});
  menu->addSeparator();
  m_actions.add(*menu, Command::Preferences, texts.preferences(), "preferences-system", {Qt::CTRL | Qt::Key_Comma})
      .setMenuRole(QAction::PreferencesRole);
}

void MainMenu::makeViewMenu() {
  const auto texts = MainMenuTexts(m_context.foundation.localize);
  QMenu* menu = addMenu(texts.view());
  m_actions.add(*menu, Command::Grid, texts.asGrid(), "view-grid", {Qt::CTRL | Qt::Key_1});
  m_actions.add(*menu, Command::Tree, texts.asTree(), "view-tree", {Qt::CTRL | Qt::Key_2});
  m_actions.add(*menu, Command::List, texts.asList(), "view-list", {Qt::CTRL | Qt::Key_3});
  m_actions.add(*menu, Command::Timeline, texts.asTimeline(), "view-timeline", {Qt::CTRL | Qt::Key_4});
  menu->addSeparator();
  m_actions.add(*menu, Command::System, texts.systemJobs(), nullptr, {Qt::CTRL | Qt::SHIFT | Qt::Key_J});
  m_actions.add(*menu, Command::OnlyProblems, texts.onlyProblems());
  m_actions.add(*menu, Command::OnlyFailed, texts.onlyFailed());
  m_actions.add(*menu, Command::OnlyRunning, texts.onlyRunning());
  addColumnsMenu(*menu, texts.columns());
  menu->addSeparator();
  m_actions.add(*menu, Command::CheckJobs, texts.checkJobs());
  menu->addSeparator();
  m_actions.add(*menu, Command::TitleBar, texts.titleBar());
  m_actions.add(*menu, Command::FullScreen, texts.fullScreen(), nullptr, fullScreenKeys());
}

void MainMenu::addColumnsMenu(QMenu& menu, const std::string& title) {
  QMenu* columns = menu.addMenu(qt(title));
  connect(columns, &QMenu::aboutToShow, this, [this, columns] {
    columns->clear();
    m_tabs.listMode().addColumnItems(*columns);
  });
  connect(&menu, &QMenu::aboutToShow, this,
          [this, columns] { columns->menuAction()->setEnabled(m_menus.isEnabled(Command::Columns)); });
}

void MainMenu::makeHelpMenu() {
  const auto texts = MainMenuTexts(m_context.foundation.localize);
  QMenu* menu = addMenu(texts.help());
  m_actions.add(*menu, Command::Help, texts.pages(), "help-contents", {QKeySequence::HelpContents});
  m_actions.add(*menu, Command::ManLaunchdplist, texts.manual());
  m_actions.add(*menu, Command::Site, texts.site());
  m_actions.add(*menu, Command::MailSupport, texts.mailSupport(), "mail-send");
  menu->addSeparator();
  m_actions.add(*menu, Command::CheckForUpdates, texts.checkForUpdates()).setMenuRole(QAction::ApplicationSpecificRole);
  m_actions.add(*menu, Command::About, texts.about(), "help-about").setMenuRole(QAction::AboutRole);
}

void fillShareMenu(QMenu& menu, const WindowContext& context) {
  menu.clear();
  const auto items = shareItems(context.selection);
  if (!items) return;
  for (const SharingService& service : sharingServices(*items, context.foundation.localize)) {
    const char* symbol = service.way == SharingService::Way::Copy   ? "edit-copy"
                         : service.way == SharingService::Way::Mail ? "mail-send"
                                                                    : "document-open";
    menu.addAction(IconLoader::symbol(symbol), qt(service.title),
                   [&context, way = service.way, items] { share(context.platform.workspace, way, *items); });
  }
}

}  // namespace mirvel::ui
