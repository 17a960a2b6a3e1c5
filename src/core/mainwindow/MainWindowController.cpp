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

MainWindowController::MainWindowController(const SessionContext& session, Drafts& drafts)
    : m_session(session),
      m_drafts(drafts),
      m_selectionChanged(session.selection.changed().subscribe([this] { selectedJobDidChange(); })) {}

void MainWindowController::selectedJobDidChange() {
  updateTitle();
  if (m_session.shell.mainWindow) m_session.shell.mainWindow->setEdited(false);
  if (m_session.shell.detail) m_session.shell.detail->updateDetail();
  if (!m_session.selection.job()) m_session.fetcher.refresh();
}

std::string MainWindowController::title() const {
  std::string name(Const::AppName::mirvel);
  const auto job = shownJob(m_session.selection, m_session.shell);
  if (!job || job->name.empty()) return name;
  return bidirectionalString({name, job->name}, Const::separator, m_session.foundation.localize.isRightToLeft());
}

void MainWindowController::updateTitle() {
  MainWindowType* const window = m_session.shell.mainWindow;
  if (!window) return;
  window->setTitle(title());
  window->setTitleVisible(m_session.foundation.defaults.showTitleBar());
}

void MainWindowController::switchMode(Mode mode) {
  MainWindowType* const window = m_session.shell.mainWindow;
  if (m_session.editing.hasUnsavedChanges()) {  // the edited job must stay in view
    if (window) window->showMode(m_session.currentMode.chosen());
    return;
  }
  (void)m_session.foundation.defaults.setSelectedMode(static_cast<int>(mode));  // failures have been reported
  if (window) {
    window->showMode(mode);
    window->clearFilter();
  }
  m_session.currentMode.clearFilter();
  m_session.currentMode.update(m_session.catalogue.jobs());
  if (ModeType* const current = m_session.currentMode.view()) current->deselect();
  if (m_session.shell.detail) m_session.shell.detail->clearDetail();
  m_session.selection.select(nullptr);
}

Alert MainWindowController::unsavedChangesQuestion() const {
  const Localize& localize = m_session.foundation.localize;
  return {.message = WindowTexts(localize).unsavedChanges(),
          .informativeText = WindowTexts(localize).yourChangesWillBeLostIfYouDontSaveThem(),
          .defaultTitle = WindowTexts(localize).check(),
          .alternateTitle = localize.discardChanges(),
          .safeButton = Interface::defaultButton};
}

void MainWindowController::unsavedChangesAlert() {
  m_session.platform.interface.beginSheet(unsavedChangesQuestion(),
                                          [this](int button) { answerUnsavedChanges(button); });
}

bool MainWindowController::sessionMayEnd() {
  if (!m_session.editing.hasUnsavedChanges()) return true;
  if (m_session.platform.interface.alert(unsavedChangesQuestion()) != Interface::alternateButton) return false;
  // Another program may still cancel the end of the session, but the answer remains valid.
  if (EditType* const edit = m_session.shell.edit) edit->discardEdits();
  (void)m_drafts.settle();  // failures have been reported
  return true;
}

void MainWindowController::askBeforeQuitting() {
  if (!m_isTerminating) unsavedChangesAlert();
  m_isTerminating = true;
}

void MainWindowController::askWhileQuittingWaits(std::function<void(bool quitsNow)> answer) {
  const Localize& localize = m_session.foundation.localize;
  m_session.platform.interface.beginSheet(
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
  EditType* edit = m_session.shell.edit;
  if (!m_isTerminating) {
    if (edit) edit->discardEdits();
    return;
  }
  m_session.editing.setUnsavedChanges(false);
  if (edit) edit->refreshEditedState();
  if (m_session.shell.terminate) m_session.shell.terminate();
}

void MainWindowController::toggleSystemJobs() {
  (void)m_session.foundation.defaults.negate(Defaults::Key::showSystemJobs);  // failures have been reported
}

void MainWindowController::toggleTitleBar() {
  (void)m_session.foundation.defaults.negate(Defaults::Key::showTitleBar);  // failures have been reported
}

void MainWindowController::fullScreenDidChange(bool isFullScreen) {
  Defaults& defaults = m_session.foundation.defaults;
  if (isFullScreen == defaults.preferFullScreen()) return;
  (void)defaults.setPreferFullScreen(isFullScreen);  // failures have been reported
}

void MainWindowController::revealInFinder(const Job& job) {
  if (job.kind == Kind::loginItemSystemPreferences) {
    LoginItem::openAccountsPreferences(m_session.platform.workspace, m_session.foundation.roots);
  } else {
    m_session.platform.workspace.reveal(job.url);
  }
}

}  // namespace mirvel
