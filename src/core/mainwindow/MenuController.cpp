#include "core/mainwindow/MenuController.h"

#include "core/actions/JobDeletion.h"
#include "core/actions/RevisionController.h"
#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/mainwindow/MainWindowController.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/RevisionMenu.h"
#include "core/mainwindow/WindowContext.h"
#include "core/session/Busy.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

std::optional<Sheet> sheetOf(Command command) {
  switch (command) {
    case Command::new_:
      return Sheet::New;
    case Command::duplicate:
      return Sheet::Duplicate;
    case Command::restoreDeleted:
      return Sheet::RestoreDeleted;
    case Command::test:
      return Sheet::Test;
    case Command::log:
      return Sheet::Log;
    case Command::info:
      return Sheet::Info;
    default:
      return std::nullopt;
  }
}

}  // namespace

bool MenuController::isOffered(Command command) const {
  const Shell& shell = m_context.shell;
  if (const auto sheet = sheetOf(command)) return shell.sheets.contains(*sheet);
  switch (command) {
    case Command::save:
      return shell.edit || shell.saveScript;
    case Command::edit:
    case Command::revert:
      return shell.edit != nullptr;
    case Command::importAction:
      return static_cast<bool>(shell.importJob);
    case Command::export_:
      return static_cast<bool>(shell.exportJob);
    case Command::checkForUpdates:
      return static_cast<bool>(shell.checkForUpdate);
    default:
      return true;
  }
}

CommandContext MenuController::context() const {
  const Shell& shell = m_context.shell;
  const Defaults& defaults = m_context.foundation.defaults;
  CommandContext result{.hasUnsavedChanges = m_context.editing.hasUnsavedChanges(),
                        .isSaving = m_context.saving.isBusy(),
                        .isScriptInFront = static_cast<bool>(shell.saveScript),
                        .editsSystemJobs = defaults.editSystemJobs(),
                        .showsSystemJobs = defaults.showSystemJobs(),
                        .showsTitleBar = defaults.showTitleBar(),
                        .mode = m_context.currentMode.chosen()};
  if (const auto job = shownJob(m_context.selection, m_context.shell)) {
    result.selected = job->kind;
    result.isSelectedNamed = !job->name.empty();
    result.canDeleteSelected = m_context.deletion.canDelete(*job);
    result.hasRevisions = m_context.revisions.revisions().find(storeKey(job->url)) != nullptr;
  }
  if (shell.detail) result.detailTab = shell.detail->detailTab();
  if (shell.mainWindow) {
    result.hasSheet = shell.mainWindow->hasSheet();
    result.hasFilterField = shell.mainWindow->hasFilterField();
    result.isFullScreen = shell.mainWindow->isFullScreen();
  }
  return result;
}

void MenuController::perform(Command command) {
  if (!isOffered(command) || !isEnabled(command)) return;
  if (const auto mode = modeOf(command)) return m_context.mainWindow.switchMode(*mode);
  if (const auto sheet = sheetOf(command)) return m_context.shell.sheets.at(*sheet)();
  performFile(command);
  performView(command);
  performHelp(command);
}

void MenuController::performFile(Command command) {
  MainWindowController& window = m_context.mainWindow;
  const Shell& shell = m_context.shell;
  switch (command) {
    case Command::edit:
      if (shell.detail) shell.detail->showEdit();
      return;
    case Command::save:
      return saveSelected();
    case Command::importAction:
      return shell.importJob();
    case Command::export_:
      return shell.exportJob();
    case Command::delete_:
      return m_context.deletion.confirm(m_context.selection.job());
    case Command::revealInFinder:
      return window.revealInFinder(*m_context.selection.job());
    case Command::refresh:
      if (shell.emptyIconCache) shell.emptyIconCache();
      return m_context.fetcher.fetchJobs();
    default:
      return;
  }
}

void MenuController::saveSelected() {
  const Shell& shell = m_context.shell;
  if (shell.saveScript) return shell.saveScript();
  if (!m_context.selection.launchd()) return m_context.platform.interface.saveError();
  shell.edit->save();
}

void MenuController::performView(Command command) {
  MainWindowType* const window = m_context.shell.mainWindow;
  switch (command) {
    case Command::filter:
      if (window) window->focusOnFilter();
      return;
    case Command::fullScreen:
      if (window) window->toggleFullScreen();
      return;
    case Command::system:
      return m_context.mainWindow.toggleSystemJobs();
    case Command::titleBar:
      return m_context.mainWindow.toggleTitleBar();
    default:
      return;
  }
}

void MenuController::performHelp(Command command) {
  Workspace& workspace = m_context.platform.workspace;
  const std::string site(Const::siteURL);
  switch (command) {
    case Command::help:
      workspace.openAddress(site + "/mirvel-help");
      return;
    case Command::site:
      workspace.openAddress(site);
      return;
    case Command::mailSupport:
      workspace.openAddress("mailto:" + std::string(Const::supportMail));
      return;
    case Command::manLaunchdplist:
      workspace.openAddress(std::string(Const::launchdManual));
      return;
    case Command::checkForUpdates:
      return m_context.shell.checkForUpdate(true);
    case Command::about:
      if (m_context.shell.mainWindow) m_context.shell.mainWindow->showAbout();
      return;
    default:
      return;
  }
}

}  // namespace mirvel
