#include "ui/mainwindow/CommandActions.h"

#include <QMainWindow>

#include "core/mainwindow/MainMenuTexts.h"
#include "core/mainwindow/MenuController.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// The desktop's full-screen shortcuts. On a desktop for which Qt defines none, the command has no shortcut.
QList<QKeySequence> fullScreenKeys() {
  const QList<QKeySequence> keys = QKeySequence::keyBindings(QKeySequence::FullScreen);
  return keys.isEmpty() ? QList<QKeySequence>{QKeySequence(Qt::Key_F11)} : keys;
}

}  // namespace

CommandActions::CommandActions(const Localize& localize, MenuController& menus, QMainWindow& window)
    : m_localize(localize), m_menus(menus), m_window(window) {
  addFileCommands();
  addViewCommands();
  addHelpCommands();
}

void CommandActions::add(Command command, const std::string& title, const char* symbol,
                         const QList<QKeySequence>& shortcuts) {
  auto* action = new QAction(qt(title), &m_window);
  if (symbol) action->setIcon(IconLoader::symbol(symbol));
  action->setShortcuts(shortcuts);
  QObject::connect(action, &QAction::triggered, &m_window, [this, command] {
    m_menus.perform(command);
    validate();
  });
  m_actions[command] = action;
}

void CommandActions::addFileCommands() {
  const auto texts = MainMenuTexts(m_localize);
  add(Command::New, texts.newJob(), "list-add", {QKeySequence(QKeySequence::New)});
  add(Command::Edit, texts.editJob(), "document-edit", {QKeySequence(Qt::CTRL | Qt::Key_E)});
  add(Command::Save, texts.save(), "document-save", {QKeySequence(QKeySequence::Save)});
  add(Command::Duplicate, texts.duplicate(), "edit-copy", {QKeySequence(Qt::CTRL | Qt::Key_D)});
  add(Command::Import, texts.importJob(), "document-open", {QKeySequence(QKeySequence::Open)});
  add(Command::Export, texts.exportJob(), nullptr, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)});
  add(Command::Delete, texts.delete_(), "edit-delete",
      {QKeySequence(Qt::CTRL | Qt::Key_Backspace), QKeySequence(QKeySequence::Delete)});
  add(Command::RestoreDeleted, texts.restoreDeleted());
  add(Command::Test, texts.test(), "media-playback-start", {QKeySequence(Qt::CTRL | Qt::Key_T)});
  add(Command::Log, texts.log(), "text-x-log", {QKeySequence(Qt::CTRL | Qt::Key_L)});
  add(Command::Info, texts.info(), "document-properties", {QKeySequence(Qt::CTRL | Qt::Key_I)});
  add(Command::RevealInFinder, m_localize.revealInFinder(), "folder-open",
      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R)});
  add(Command::Refresh, texts.refresh(), "view-refresh",
      {QKeySequence(QKeySequence::Refresh), QKeySequence(Qt::CTRL | Qt::Key_R)});
}

void CommandActions::addViewCommands() {
  const auto texts = MainMenuTexts(m_localize);
  add(Command::Filter, texts.filter(), "edit-find", {QKeySequence(QKeySequence::Find)});
  add(Command::Grid, texts.asGrid(), "view-grid", {QKeySequence(Qt::CTRL | Qt::Key_1)});
  add(Command::Tree, texts.asTree(), "view-tree", {QKeySequence(Qt::CTRL | Qt::Key_2)});
  add(Command::List, texts.asList(), "view-list", {QKeySequence(Qt::CTRL | Qt::Key_3)});
  add(Command::Timeline, texts.asTimeline(), "view-timeline", {QKeySequence(Qt::CTRL | Qt::Key_4)});
  add(Command::System, texts.systemJobs(), nullptr, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_J)});
  add(Command::TitleBar, texts.titleBar());
  add(Command::FullScreen, texts.fullScreen(), nullptr, fullScreenKeys());
}

void CommandActions::addHelpCommands() {
  const auto texts = MainMenuTexts(m_localize);
  add(Command::Help, texts.pages(), "help-contents", {QKeySequence(QKeySequence::HelpContents)});
  add(Command::ManLaunchdplist, texts.manual());
  add(Command::Site, texts.site());
  add(Command::MailSupport, texts.mailSupport(), "mail-send");
  add(Command::CheckForUpdates, texts.checkForUpdates());
  add(Command::About, texts.about(), "help-about");
  action(Command::About)->setMenuRole(QAction::AboutRole);
  action(Command::CheckForUpdates)->setMenuRole(QAction::ApplicationSpecificRole);
}

void CommandActions::validate() {
  const CommandContext context = m_menus.context();
  for (const auto& [command, action] : m_actions) {
    action->setVisible(m_menus.isOffered(command));
    action->setEnabled(m_menus.isOffered(command) && isEnabled(command, context));
    const auto isTicked = isOn(command, context);
    action->setCheckable(isTicked.has_value());
    action->setChecked(isTicked.value_or(false));
  }
}

}  // namespace mirvel::ui
