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
    case Command::New:
      return Sheet::New;
    case Command::Duplicate:
      return Sheet::Duplicate;
    case Command::RestoreDeleted:
      return Sheet::RestoreDeleted;
    case Command::Test:
      return Sheet::Test;
    case Command::Log:
      return Sheet::Log;
    case Command::Info:
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
    case Command::Save:
      return shell.edit || shell.saveScript;
    case Command::Edit:
    case Command::Revert:
      return shell.edit != nullptr;
    case Command::Import:
      return static_cast<bool>(shell.importJob);
    case Command::Export:
      return static_cast<bool>(shell.exportJob);
    case Command::CheckForUpdates:
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
  // Each of these ignores the commands of the others.
  performFile(command);
  performView(command);
  performHelp(command);
}

void MenuController::performFile(Command command) {
  MainWindowController& window = m_context.mainWindow;
  const Shell& shell = m_context.shell;
  switch (command) {
    case Command::Edit:
      if (shell.detail) shell.detail->showEdit();
      return;
    case Command::Save:
      return saveSelected();
    case Command::Import:
      return shell.importJob();
    case Command::Export:
      return shell.exportJob();
    case Command::Delete:
      return m_context.deletion.confirm(m_context.selection.job());
    case Command::RevealInFinder:
      return window.revealInFinder(*m_context.selection.job());
    case Command::Refresh:
      // A scan alone would keep the cached icons.
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
    case Command::Filter:
      if (window) window->focusOnFilter();
      return;
    case Command::FullScreen:
      if (window) window->toggleFullScreen();
      return;
    case Command::System:
      return m_context.mainWindow.toggleSystemJobs();
    case Command::TitleBar:
      return m_context.mainWindow.toggleTitleBar();
    default:
      return;
  }
}

void MenuController::performHelp(Command command) {
  Workspace& workspace = m_context.platform.workspace;
  const std::string site(Const::siteURL);
  switch (command) {
    case Command::Help:
      workspace.openAddress(site + "/mirvel-help");
      return;
    case Command::Site:
      workspace.openAddress(site);
      return;
    case Command::MailSupport:
      workspace.openAddress("mailto:" + std::string(Const::supportMail));
      return;
    case Command::ManLaunchdplist:
      workspace.openAddress(std::string(Const::launchdManual));
      return;
    case Command::CheckForUpdates:
      return m_context.shell.checkForUpdate(true);
    case Command::About:
      if (m_context.shell.mainWindow) m_context.shell.mainWindow->showAbout();
      return;
    default:
      return;
  }
}

}  // namespace mirvel
