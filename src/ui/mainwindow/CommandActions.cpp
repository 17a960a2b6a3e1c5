#include "ui/mainwindow/CommandActions.h"

#include <QMainWindow>

#include "core/mainwindow/MainMenuTexts.h"
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

CommandActions::CommandActions(Program& program, QMainWindow& window) : m_program(program), m_window(window) {
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
    m_program.menus.perform(command);
    validate();
  });
  m_actions[command] = action;
}

void CommandActions::addFileCommands() {
  const auto texts = MainMenuTexts(m_program.foundation.localize);
  add(Command::new_, texts.newJob(), "list-add", {QKeySequence(QKeySequence::New)});
  add(Command::edit, texts.editJob(), "document-edit", {QKeySequence(Qt::CTRL | Qt::Key_E)});
  add(Command::save, texts.save(), "document-save", {QKeySequence(QKeySequence::Save)});
  add(Command::duplicate, texts.duplicate(), "edit-copy", {QKeySequence(Qt::CTRL | Qt::Key_D)});
  add(Command::importAction, texts.importJob(), "document-open", {QKeySequence(QKeySequence::Open)});
  add(Command::export_, texts.exportJob(), nullptr, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)});
  add(Command::delete_, texts.delete_(), "edit-delete",
      {QKeySequence(Qt::CTRL | Qt::Key_Backspace), QKeySequence(QKeySequence::Delete)});
  add(Command::restoreDeleted, texts.restoreDeleted());
  add(Command::test, texts.test(), "media-playback-start", {QKeySequence(Qt::CTRL | Qt::Key_T)});
  add(Command::log, texts.log(), "text-x-log", {QKeySequence(Qt::CTRL | Qt::Key_L)});
  add(Command::info, texts.info(), "document-properties", {QKeySequence(Qt::CTRL | Qt::Key_I)});
  add(Command::revealInFinder, m_program.foundation.localize.revealInFinder(), "folder-open",
      {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_R)});
  add(Command::refresh, texts.refresh(), "view-refresh",
      {QKeySequence(QKeySequence::Refresh), QKeySequence(Qt::CTRL | Qt::Key_R)});
}

void CommandActions::addViewCommands() {
  const auto texts = MainMenuTexts(m_program.foundation.localize);
  add(Command::filter, texts.filter(), "edit-find", {QKeySequence(QKeySequence::Find)});
  add(Command::grid, texts.asGrid(), "view-grid", {QKeySequence(Qt::CTRL | Qt::Key_1)});
  add(Command::tree, texts.asTree(), "view-tree", {QKeySequence(Qt::CTRL | Qt::Key_2)});
  add(Command::list, texts.asList(), "view-list", {QKeySequence(Qt::CTRL | Qt::Key_3)});
  add(Command::timeline, texts.asTimeline(), "view-timeline", {QKeySequence(Qt::CTRL | Qt::Key_4)});
  add(Command::system, texts.systemJobs(), nullptr, {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_J)});
  add(Command::titleBar, texts.titleBar());
  add(Command::fullScreen, texts.fullScreen(), nullptr, fullScreenKeys());
}

void CommandActions::addHelpCommands() {
  const auto texts = MainMenuTexts(m_program.foundation.localize);
  add(Command::help, texts.pages(), "help-contents", {QKeySequence(QKeySequence::HelpContents)});
  add(Command::manLaunchdplist, texts.manual());
  add(Command::site, texts.site());
  add(Command::mailSupport, texts.mailSupport(), "mail-send");
  add(Command::checkForUpdates, texts.checkForUpdates());
  add(Command::about, texts.about(), "help-about");
  action(Command::about)->setMenuRole(QAction::AboutRole);
  action(Command::checkForUpdates)->setMenuRole(QAction::ApplicationSpecificRole);
}

void CommandActions::validate() {
  const MenuController& menus = m_program.menus;
  const CommandContext context = menus.context();
  for (const auto& [command, action] : m_actions) {
    action->setVisible(menus.isOffered(command));
    action->setEnabled(menus.isOffered(command) && isEnabled(command, context));
    const auto isTicked = isOn(command, context);
    action->setCheckable(isTicked.has_value());
    action->setChecked(isTicked.value_or(false));
  }
}

}  // namespace mirvel::ui
