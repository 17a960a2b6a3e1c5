#include "core/editor/EditController.h"

#include <optional>

#include "core/actions/ActionController.h"
#include "core/actions/JobOnDisk.h"
#include "core/catalogue/JobFile.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/editor/EditorTexts.h"
#include "core/files/ReadFile.h"
#include "core/jobfile/RunString.h"
#include "core/locale/Localize.h"
#include "core/ports/Interface.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/session/Busy.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"

namespace mirvel {

namespace {

/// The contents of the job's file if another program has changed them. Null also if the file can't be read: then a save
/// can't lose anything.
std::optional<std::string> changedFile(const Launchd& job, const Editing& editing) {
  if (job.isNewFile) return std::nullopt;
  auto bytes = readFile(job.url.path(), JobFolder::largestFile);
  if (!bytes || editing.expectsInFile(Checksum::ofFile(*bytes).text())) return std::nullopt;
  return *std::move(bytes);
}

bool mayBeSaved(const Job* job, const Defaults& defaults) {
  return job && job->record() && job->kind.isEditable(defaults.editSystemJobs());
}

/// A job file as XML, whatever its format.
std::string readable(const std::string& bytes) {
  const auto document = propertylist::read(bytes);
  if (!document) return bytes;
  const auto text = propertylist::writeXml(document->value());
  return text ? *text : bytes;
}

}  // namespace

EditController::EditController(const SessionContext& session, const Busy& saving, const Busy& scanning,
                               ActionController& actions, EditStackType& stack)
    : m_session(session), m_saving(saving), m_scanning(scanning), m_actions(actions), m_stack(stack) {
  m_session.shell.edit = this;
}

EditController::~EditController() {
  m_session.shell.edit = nullptr;
}

void EditController::updateButtons() {
  const Localize& localize = m_session.foundation.localize;
  const bool isSaving = m_saving.isBusy();
  m_stack.showButtons(
      {.isBusy = isSaving || m_scanning.isBusy(),
       .isSaving = isSaving,
       .canSave = !isSaving && mayBeSaved(m_session.selection.job().get(), m_session.foundation.defaults),
       .discardTitle =
           m_session.editing.hasUnsavedChanges() ? localize.discardChanges() : EditorTexts(localize).done()});
}

void EditController::refreshEditedState() {
  if (m_session.shell.mainWindow) m_session.shell.mainWindow->setEdited(m_session.editing.hasUnsavedChanges());
  updateButtons();
}

std::optional<InvalidField> EditController::refuse() {
  m_stack.endEditing();  // first: the text that is being typed may be invalid
  return m_stack.refuse();
}

void EditController::save(std::function<void(bool isSaved)> ended) {
  if (!ended) ended = [](bool) {};
  const auto job = m_session.selection.launchd();
  if (m_saving.isBusy()) return ended(false);
  if (!mayBeSaved(job.get(), m_session.foundation.defaults)) {
    m_session.platform.interface.saveError();
    return ended(false);
  }
  if (const auto invalid = refuse()) {
    m_session.platform.interface.error(invalid->message, invalid->reason);
    return ended(false);
  }
  if (auto theirs = changedFile(*job, m_session.editing)) {
    return askAboutConflict({job, *std::move(theirs), std::move(ended)});
  }
  m_actions.save(job, ended);
}

void EditController::askAboutConflict(const Conflict& conflict) {
  const Localize& localize = m_session.foundation.localize;
  m_session.platform.interface.beginSheet(
      {.message = EditorTexts(localize).theFileHasChanged(conflict.job->name),
       .informativeText = EditorTexts(localize).anotherProgramChangedTheFile(),
       .defaultTitle = EditorTexts(localize).compare(),
       .alternateTitle = EditorTexts(localize).keepMine(),
       .otherTitle = EditorTexts(localize).useTheirs(),
       .cancelTitle = localize.cancel()},
      [this, conflict](int answer) {
        if (answer == Interface::alternateButton) return resolveConflict(conflict, VersionChoice::Mine);
        if (answer == Interface::otherButton) return resolveConflict(conflict, VersionChoice::Theirs);
        if (answer != Interface::defaultButton) return conflict.ended(false);
        const Versions versions{.mine = textAsEdited(conflict.job->plist()), .theirs = readable(conflict.theirs)};
        m_stack.compare(versions, [this, conflict](VersionChoice choice) { resolveConflict(conflict, choice); });
      });
}

void EditController::resolveConflict(const Conflict& conflict, VersionChoice choice) {
  const auto selected = m_session.selection.launchd();
  // Another job may have been selected while the sheet was open.
  const bool isSelected = selected && selected->url.equalTo(conflict.job->url);
  if (isSelected && choice == VersionChoice::Theirs) {
    m_stack.hideDiscardButton();
    reread();
  }
  if (!isSelected || choice != VersionChoice::Mine) return conflict.ended(false);
  // Without unsaved changes, a scan may have replaced the job by the other version.
  if (selected != conflict.job && !m_session.editing.replaceRecord(textAsEdited(conflict.job->plist()))) {
    m_session.platform.interface.saveError();
    return conflict.ended(false);
  }
  // So that only a further change is a conflict again.
  m_session.editing.setFileChecksum(Checksum::ofFile(conflict.theirs).text());
  m_actions.save(selected, conflict.ended);
}

void EditController::discardEdits() {
  m_stack.hideDiscardButton();
  if (m_session.editing.hasUnsavedChanges()) return reread();
  if (m_session.shell.detail) m_session.shell.detail->showDisplay();
}

/// Updates the record from the file at once, since the details are shown before the scan has read it. If the file can't
/// be read, restores the record as it was before the edits.
void EditController::takeFile(const std::shared_ptr<Launchd>& job) {
  job->kind = job->originalKind;
  const auto bytes = jobBytes(job->url);
  if (!bytes || !m_session.editing.take(job, *bytes)) m_session.editing.restore(job);
}

/// Requests a scan that reads the file even if it is unchanged, as the record contains discarded edits.
void EditController::reread() {
  if (const auto job = m_session.selection.launchd()) {
    takeFile(job);
    job->readAgain();
  }
  saveCompleted();
  if (m_session.shell.detail) m_session.shell.detail->showDisplay();
  m_session.fetcher.refresh();
}

void EditController::saveCompleted() {
  m_session.editing.setUnsavedChanges(false);
  refreshEditedState();
}

void EditController::help() {
  if (m_session.shell.showHelp) m_session.shell.showHelp("settings");
}

bool replaceSelected(Editing& editing, Interface& interface, const Localize& localize,
                     const propertylist::Dictionary& dictionary) {
  const auto text = propertylist::writeXml(dictionary);
  if (text && editing.replaceRecord(*text)) return true;
  interface.error(localize.anUnknownErrorOccurred(), localize.pleaseTryAgain());
  return false;
}

}  // namespace mirvel
