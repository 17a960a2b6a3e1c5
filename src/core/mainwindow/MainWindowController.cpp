#include "core/mainwindow/MainWindowController.h"

#include "core/base/Const.h"
#include "core/catalogue/LoginItem.h"
#include "core/editor/Drafts.h"
#include "core/mainwindow/ModeRules.h"
#include "core/mainwindow/WindowTexts.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

MainWindowController::MainWindowController(Foundation& foundation, const Platform& platform, const Shell& shell,
                                           const Catalogue& catalogue, Selection& selection, CurrentMode& currentMode,
                                           Editing& editing, Fetcher& fetcher, Drafts& drafts)
    : m_foundation(foundation),
      m_platform(platform),
      m_shell(shell),
      m_catalogue(catalogue),
      m_selection(selection),
      m_currentMode(currentMode),
      m_editing(editing),
      m_fetcher(fetcher),
      m_drafts(drafts),
      m_selectionChanged(selection.changed().subscribe([this] { selectedJobDidChange(); })) {}

void MainWindowController::selectedJobDidChange() {
  updateTitle();
  if (m_shell.mainWindow) m_shell.mainWindow->setEdited(false);
  if (m_shell.detail) m_shell.detail->updateDetail();
  if (!m_selection.job()) m_fetcher.refresh();
}

std::string MainWindowController::title() const {
  std::string name(Const::AppName::mirvel);
  const auto job = shownJob(m_selection, m_shell);
  if (!job || job->name.empty()) return name;
  return bidirectionalString({name, job->name}, Const::separator, m_foundation.localize.isRightToLeft());
}

void MainWindowController::updateTitle() {
  MainWindowType* const window = m_shell.mainWindow;
  if (!window) return;
  window->setTitle(title());
  window->setTitleVisible(m_foundation.defaults.showTitleBar());
}

void MainWindowController::switchMode(Mode mode) {
  MainWindowType* const window = m_shell.mainWindow;
  if (m_editing.hasUnsavedChanges()) {  // the edited job must stay in view
    if (window) window->showMode(m_currentMode.chosen());
    return;
  }
  (void)m_foundation.defaults.setSelectedMode(static_cast<int>(mode));  // failures have been reported
  if (window) {
    window->showMode(mode);
    window->clearFilter();
  }
  m_currentMode.clearFilter();
  if (ModeType* const current = m_currentMode.view()) {
    current->update(m_catalogue.jobs());
    current->deselect();
  }
  if (m_shell.detail) m_shell.detail->clearDetail();
  m_selection.select(nullptr);
}

Alert MainWindowController::unsavedChangesQuestion() const {
  const Localize& localize = m_foundation.localize;
  return {.message = WindowTexts(localize).unsavedChanges(),
          .informativeText = WindowTexts(localize).yourChangesWillBeLostIfYouDontSaveThem(),
          .defaultTitle = WindowTexts(localize).check(),
          .alternateTitle = localize.discardChanges(),
          .safeButton = Interface::defaultButton};
}

void MainWindowController::unsavedChangesAlert() {
  m_platform.interface.beginSheet(unsavedChangesQuestion(), [this](int button) { answerUnsavedChanges(button); });
}

bool MainWindowController::sessionMayEnd() {
  if (!m_editing.hasUnsavedChanges()) return true;
  if (m_platform.interface.alert(unsavedChangesQuestion()) != Interface::alternateButton) return false;
  // Another program may still cancel the end of the session, but the answer remains valid.
  if (EditType* const edit = m_shell.edit) edit->discardEdits();
  (void)m_drafts.settle();  // failures have been reported
  return true;
}

void MainWindowController::askBeforeQuitting() {
  if (!m_isTerminating) unsavedChangesAlert();
  m_isTerminating = true;
}

void MainWindowController::askWhileQuittingWaits(std::function<void(bool quitsNow)> answer) {
  const Localize& localize = m_foundation.localize;
  m_platform.interface.beginSheet(
      {.message = WindowTexts(localize).jobIsBeingSavedOrDeleted(),
       .informativeText = WindowTexts(localize).itMayRemainIncomplete(),
       .defaultTitle = localize.cancel(),
       .alternateTitle = WindowTexts(localize).quitNow(),
       .safeButton = Interface::defaultButton},
      [answer = std::move(answer)](int button) { answer(button == Interface::alternateButton); });
}

void MainWindowController::answerUnsavedChanges(int button) {
  if (button != Interface::alternateButton) {
    m_isTerminating = false;
    return;
  }
  EditType* edit = m_shell.edit;
  if (!m_isTerminating) {
    if (edit) edit->discardEdits();
    return;
  }
  m_editing.setUnsavedChanges(false);
  if (edit) edit->refreshEditedState();
  if (m_shell.terminate) m_shell.terminate();
}

void MainWindowController::toggleSystemJobs() {
  (void)m_foundation.defaults.negate(Defaults::Key::showSystemJobs);  // failures have been reported
  m_fetcher.refresh();
}

void MainWindowController::toggleTitleBar() {
  (void)m_foundation.defaults.negate(Defaults::Key::showTitleBar);  // failures have been reported
  updateTitle();
}

void MainWindowController::fullScreenDidChange(bool isFullScreen) {
  Defaults& defaults = m_foundation.defaults;
  if (isFullScreen == defaults.preferFullScreen()) return;
  (void)defaults.setPreferFullScreen(isFullScreen);  // failures have been reported
}

void MainWindowController::revealInFinder(const Job& job) {
  if (job.kind == Kind::loginItemSystemPreferences) {
    LoginItem::openAccountsPreferences(m_platform.workspace, m_foundation.roots);
  } else {
    m_platform.workspace.reveal(job.url);
  }
}

}  // namespace mirvel
