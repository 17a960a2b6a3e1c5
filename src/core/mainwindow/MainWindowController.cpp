#include "core/mainwindow/MainWindowController.h"

#include "core/app/Program.h"
#include "core/catalogue/LoginItem.h"
#include "core/support/Bidirectional.h"
#include "core/support/Const.h"

namespace mirvel {

void MainWindowController::selectedJobDidChange() {
  updateTitle();
  if (m_program.shell.mainWindow) m_program.shell.mainWindow->setEdited(false);
  if (m_program.shell.detail) m_program.shell.detail->updateDetail();
  if (!m_program.state.selectedJob) refresh();
}

void MainWindowController::applySelection() {
  const auto job = m_program.state.selectedJob;
  ModeType* mode = m_program.currentMode();
  if (!job || !mode) return;
  if (job->isNewFile) {
    mode->select(job->url);
  } else {
    mode->select(job);
  }
}

std::string MainWindowController::title() const {
  const std::string name(Const::AppName::mirvel);
  const auto& job = m_program.state.selectedJob;
  if (!job || job->name.empty()) return name;
  return bidirectionalString({name, job->name}, Const::separator, m_program.foundation.localize.isRightToLeft());
}

void MainWindowController::updateTitle() {
  if (m_program.shell.mainWindow) m_program.shell.mainWindow->setTitle(title());
}

bool MainWindowController::canDeleteJob(const Job& job) const {
  if (m_program.state.hasUnsavedChanges || job.kind == Kind::loginItemApplication) return false;
  return !job.kind.isSystem() || m_program.foundation.defaults.editSystemJobs();
}

void MainWindowController::unsavedChangesAlert() {
  const Localize& localize = m_program.foundation.localize;
  m_program.platform.interface.beginSheet({.message = localize.unsavedChanges(),
                                           .informativeText = localize.yourChangesWillBeLostIfYouDontSaveThem(),
                                           .defaultTitle = localize.check(),
                                           .alternateTitle = localize.discardChanges()},
                                          [this](int button) { answerUnsavedChanges(button); });
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
  m_program.state.hasUnsavedChanges = false;
  if (edit) edit->refreshEditedState();
  if (m_program.shell.terminate) m_program.shell.terminate();
}

bool MainWindowController::canRefresh() const {
  return !m_program.state.hasUnsavedChanges;
}

void MainWindowController::refresh() {
  if (canRefresh()) m_program.fetcher.fetchJobs();
}

void MainWindowController::toggleSystemJobs() {
  if (!canRefresh()) return;
  const auto written = m_program.foundation.defaults.negate(Defaults::Key::showSystemJobs);
  if (!written) m_program.platform.interface.present(written.error());
  refresh();
}

bool MainWindowController::canRevealSelected() const {
  return m_program.state.selectedJob != nullptr;
}

void MainWindowController::revealSelected() {
  if (canRevealSelected()) revealInFinder(*m_program.state.selectedJob);
}

void MainWindowController::revealInFinder(const Job& job) {
  if (job.kind == Kind::loginItemSystemPreferences) {
    LoginItem::openAccountsPreferences(m_program.platform.workspace, m_program.foundation.roots);
  } else {
    m_program.platform.workspace.reveal(job.url);
  }
}

}  // namespace mirvel
