#include "core/mainwindow/MainWindowController.h"

#include "core/app/Program.h"
#include "core/base/Const.h"
#include "core/catalogue/LoginItem.h"
#include "core/creation/RestoreDeleted.h"
#include "core/mainwindow/ModeJob.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

void MainWindowController::selectedJobDidChange() {
  updateTitle();
  if (m_program.shell.mainWindow) m_program.shell.mainWindow->setEdited(false);
  if (m_program.shell.detail) m_program.shell.detail->updateDetail();
  if (!m_program.selection.job()) refresh();
}

void MainWindowController::applySelection() {
  const auto job = m_program.selection.job();
  ModeType* mode = m_program.currentMode();
  if (!job || !mode) return;
  if (job->isNewFile) {
    mode->select(job->url);
  } else {
    mode->select(job);
  }
}

std::string MainWindowController::title() const {
  std::string name(Const::AppName::mirvel);
  const auto job = shownJob(m_program);
  if (!job || job->name.empty()) return name;
  return bidirectionalString({name, job->name}, Const::separator, m_program.foundation.localize.isRightToLeft());
}

void MainWindowController::updateTitle() {
  MainWindowType* const window = m_program.shell.mainWindow;
  if (!window) return;
  window->setTitle(title());
  window->setTitleVisible(m_program.foundation.defaults.showTitleBar());
}

Mode MainWindowController::mode() const {
  const auto stored = m_program.foundation.defaults.selectedMode();
  return stored >= 0 && stored < 4 ? static_cast<Mode>(stored) : Mode::grid;
}

void MainWindowController::switchMode(Mode mode) {
  AppState& state = m_program.state;
  MainWindowType* const window = m_program.shell.mainWindow;
  if (m_program.editing.hasUnsavedChanges()) {  // what is being edited stays where it is
    if (window) window->showMode(this->mode());
    return;
  }
  (void)m_program.foundation.defaults.setSelectedMode(static_cast<int>(mode));  // what fails has been reported
  if (window) {
    window->showMode(mode);
    window->clearFilter();
  }
  state.filterString.clear();
  if (ModeType* const current = m_program.currentMode()) {
    current->update(m_program.catalogue.jobs());
    current->deselect();
  }
  if (m_program.shell.detail) m_program.shell.detail->clearDetail();
  m_program.selection.select(nullptr);
  selectedJobDidChange();
}

bool MainWindowController::canDeleteJob(const Job& job) const {
  const AppState& state = m_program.state;
  if (m_program.editing.hasUnsavedChanges() || state.saving.isBusy()) return false;
  if (job.isNewFile || job.kind == Kind::loginItemApplication) return false;
  return !job.kind.isSystem() || m_program.foundation.defaults.editSystemJobs();
}

void MainWindowController::confirmDelete(const std::shared_ptr<Job>& job) {
  if (!job || !m_program.shell.mainWindow) return;
  const Localize& localize = m_program.foundation.localize;
  m_program.platform.interface.beginSheet({.message = localize.areYouSureYouWantToDelete(job->name),
                                           .informativeText = consequenceOfDeleting(m_program, *job),
                                           .defaultTitle = localize.delete_(),
                                           .alternateTitle = localize.cancel(),
                                           .safeButton = Interface::alternateButton},
                                          [this, job](int button) {
                                            if (button == Interface::defaultButton) deleteConfirmed(job);
                                          });
}

/// Meanwhile an edit or a save may have begun.
void MainWindowController::deleteConfirmed(const std::shared_ptr<Job>& job) {
  if (canDeleteJob(*job)) return deleteAndKeep(m_program, job);
  const Localize& localize = m_program.foundation.localize;
  m_program.platform.interface.error(localize.couldntBeDeleted(job->name), localize.saveOrDiscardFirst());
}

Alert MainWindowController::unsavedChangesQuestion() const {
  const Localize& localize = m_program.foundation.localize;
  return {.message = localize.unsavedChanges(),
          .informativeText = localize.yourChangesWillBeLostIfYouDontSaveThem(),
          .defaultTitle = localize.check(),
          .alternateTitle = localize.discardChanges(),
          .safeButton = Interface::defaultButton};
}

void MainWindowController::unsavedChangesAlert() {
  m_program.platform.interface.beginSheet(unsavedChangesQuestion(),
                                          [this](int button) { answerUnsavedChanges(button); });
}

bool MainWindowController::sessionMayEnd() {
  if (!m_program.editing.hasUnsavedChanges()) return true;
  if (m_program.platform.interface.alert(unsavedChangesQuestion()) != Interface::alternateButton) return false;
  // Another program may still call the end off: what the user said goes all the same.
  if (EditType* const edit = m_program.shell.edit) edit->discardEdits();
  (void)m_program.drafts.settle();  // what fails has been reported
  return true;
}

void MainWindowController::answerUnsavedChanges(int button) {
  bool& isTerminating = m_program.appDelegate.isTerminating;
  if (button != Interface::alternateButton) {
    isTerminating = false;
    return;
  }
  EditType* edit = m_program.shell.edit;
  if (!isTerminating) {
    if (edit) edit->discardEdits();
    return;
  }
  m_program.editing.setUnsavedChanges(false);
  if (edit) edit->refreshEditedState();
  if (m_program.shell.terminate) m_program.shell.terminate();
}

void MainWindowController::refresh() {
  if (!m_program.editing.hasUnsavedChanges()) m_program.fetcher.fetchJobs();
}

void MainWindowController::toggleSystemJobs() {
  (void)m_program.foundation.defaults.negate(Defaults::Key::showSystemJobs);  // what fails has been reported
  refresh();
}

void MainWindowController::toggleTitleBar() {
  (void)m_program.foundation.defaults.negate(Defaults::Key::showTitleBar);  // what fails has been reported
  updateTitle();
}

void MainWindowController::fullScreenDidChange(bool isFullScreen) {
  Defaults& defaults = m_program.foundation.defaults;
  if (isFullScreen == defaults.preferFullScreen()) return;
  (void)defaults.setPreferFullScreen(isFullScreen);  // what fails has been reported
}

void MainWindowController::revealInFinder(const Job& job) {
  if (job.kind == Kind::loginItemSystemPreferences) {
    LoginItem::openAccountsPreferences(m_program.platform.workspace, m_program.foundation.roots);
  } else {
    m_program.platform.workspace.reveal(job.url);
  }
}

}  // namespace mirvel
