#include "core/editor/EditController.h"

#include <optional>

#include "core/actions/JobOnDisk.h"
#include "core/app/Program.h"
#include "core/base/Const.h"
#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/commands/TextAsEdited.h"
#include "core/files/ReadFile.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

namespace {

/// What stands in the job's file, if it isn't what was read from it. None too if there is nothing to be lost: no file.
std::optional<std::string> changedFile(const Launchd& job, const Editing& editing) {
  if (job.isNewFile) return std::nullopt;
  auto bytes = readFile(job.url.path(), JobFolder::largestFile);
  if (!bytes || editing.expectsInFile(JobFile::checksumOf(*bytes))) return std::nullopt;
  return *std::move(bytes);
}

bool mayBeSaved(const Job* job, const Defaults& defaults) {
  return job && job->record() && job->kind.isEditable(defaults.editSystemJobs());
}

/// As a person reads a job file, whatever form it has.
std::string readable(const std::string& bytes) {
  const auto document = propertylist::read(bytes);
  if (!document) return bytes;
  const auto text = propertylist::writeXml(document->value());
  return text ? *text : bytes;
}

}  // namespace

EditController::EditController(Program& program, EditStackType& stack) : m_program(program), m_stack(stack) {
  m_program.shell.edit = this;
}

EditController::~EditController() {
  m_program.shell.edit = nullptr;
}

void EditController::updateButtons() {
  const Localize& localize = m_program.foundation.localize;
  const bool isSaving = m_program.saving.isBusy();
  m_stack.showButtons(
      {.isBusy = isSaving || m_program.scanning.isBusy(),
       .isSaving = isSaving,
       .canSave = !isSaving && mayBeSaved(m_program.selection.job().get(), m_program.foundation.defaults),
       .discardTitle = m_program.editing.hasUnsavedChanges() ? localize.discardChanges() : localize.done()});
}

void EditController::refreshEditedState() {
  if (m_program.shell.mainWindow) m_program.shell.mainWindow->setEdited(m_program.editing.hasUnsavedChanges());
  updateButtons();
}

void EditController::save() {
  const auto job = m_program.selection.launchd();
  if (m_program.saving.isBusy()) return;
  if (!mayBeSaved(job.get(), m_program.foundation.defaults)) return m_program.platform.interface.saveError();
  m_stack.endEditing();
  if (const auto invalid = m_stack.refuse()) {
    return m_program.platform.interface.error(invalid->message, invalid->reason);
  }
  if (const auto theirs = changedFile(*job, m_program.editing)) return askAboutConflict(job, *theirs);
  m_program.actions.save(job);
}

void EditController::askAboutConflict(const std::shared_ptr<Launchd>& job, const std::string& theirs) {
  const Localize& localize = m_program.foundation.localize;
  m_program.platform.interface.beginSheet(
      {.message = localize.fileWasChangedMeanwhile(job->name),
       .informativeText = localize.anotherProgramChangedTheFile(),
       .defaultTitle = localize.compare(),
       .alternateTitle = localize.keepMine(),
       .otherTitle = localize.takeTheirs(),
       .cancelTitle = localize.cancel()},
      [this, job, theirs](int answer) {
        if (answer == Interface::alternateButton) return resolveConflict(job, theirs, Choice::Mine);
        if (answer == Interface::otherButton) return resolveConflict(job, theirs, Choice::Theirs);
        if (answer != Interface::defaultButton) return;
        const Versions versions{.mine = textAsEdited(job->plist()), .theirs = readable(theirs)};
        m_stack.compare(versions, [this, job, theirs](Choice choice) { resolveConflict(job, theirs, choice); });
      });
}

void EditController::resolveConflict(const std::shared_ptr<Launchd>& job, const std::string& theirs, Choice choice) {
  if (job != m_program.selection.job()) return;
  if (choice == Choice::Theirs) {
    m_stack.hideDiscardButton();
    return readAnew();
  }
  if (choice != Choice::Mine) return;
  m_program.editing.setFileChecksum(JobFile::checksumOf(theirs));
  m_program.actions.save(job);
}

void EditController::discardEdits() {
  m_stack.hideDiscardButton();
  if (m_program.editing.hasUnsavedChanges()) return readAnew();
  if (m_program.shell.detail) m_program.shell.detail->showDisplay();
}

/// What can be edited until the scan comes isn't what was dropped, nor what another program has replaced.
void EditController::takeFile(const std::shared_ptr<Launchd>& job) {
  job->kind = job->originalKind;
  const auto bytes = jobBytes(job->url);
  if (bytes && m_program.editing.take(job, *bytes)) return;
  if (auto asRead = job->plist().asRead()) job->plist() = *std::move(asRead);
}

/// The record was written to all along, or the file was: the scan is to read it anew.
void EditController::readAnew() {
  if (const auto job = m_program.selection.launchd()) {
    takeFile(job);
    job->readAgain();
  }
  saveCompleted();
  if (m_program.shell.detail) m_program.shell.detail->showDisplay();
  m_program.fetcher.refresh();
}

void EditController::saveCompleted() {
  m_program.editing.setUnsavedChanges(false);
  m_program.drafts.edited();
  refreshEditedState();
}

void EditController::help() {
  m_program.platform.workspace.openAddress(std::string(Const::siteURL) + "/mirvel/#settings");
}

}  // namespace mirvel
