#include "core/creation/RestoreDeleted.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "core/actions/CommentedFile.h"
#include "core/actions/LabelConflict.h"
#include "core/actions/MoveTarget.h"
#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/SaveNewJob.h"
#include "core/locale/Dates.h"
#include "core/propertylist/Comments.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

namespace mirvel {

namespace {

std::string momentText(Program& program, double seconds) {
  return Date::standardText(seconds, program.foundation.localize.timeLocale());
}

void deleteWithoutKeeping(Program& program, const std::shared_ptr<Job>& job) {
  program.actions.deleteConfirmed(Interface::defaultButton, *job);
}

void askToDeleteAnyway(Program& program, const std::shared_ptr<Job>& job, const Error& reason) {
  const Localize& localize = program.foundation.localize;
  program.platform.interface.beginSheet({.message = localize.theJobCouldntBeKept(job->name),
                                         .informativeText = reason.text() + "\n\n" + localize.youCantUndoThisAction(),
                                         .defaultTitle = localize.deleteAnyway(),
                                         .alternateTitle = localize.cancel(),
                                         .safeButton = Interface::alternateButton},
                                        [&program, job](int answer) {
                                          if (answer == Interface::defaultButton) deleteWithoutKeeping(program, job);
                                        });
}

/// Requests carry text: a file in the binary form, or in another encoding than UTF-8, becomes XML with the same values.
std::optional<std::string> textOf(const std::string& bytes) {
  if (propertylist::isUtf8(bytes) && bytes.find('\0') == std::string::npos) return bytes;
  const auto document = propertylist::read(bytes);
  if (!document) return std::nullopt;
  auto xml = propertylist::writeXml(document->value());
  return xml ? std::optional(*std::move(xml)) : std::nullopt;
}

std::optional<std::string> disabledText(const std::string& bytes) {
  auto keys = propertylist::readDictionary(bytes);
  if (!keys) return std::nullopt;
  keys->set("Disabled", true);
  auto xml = propertylist::writeXml(*std::move(keys));
  return xml ? std::optional(*std::move(xml)) : std::nullopt;
}

/// A deleted job on its way back. Until it ends nobody else brings it back, or writes a file in its place.
struct Restoration {
  DeletedJob deleted;
  std::string text = {};  ///< that is written
  URL url = deleted.url;
  bool isCopyKept = false;  ///< of the file, apart from the deleted jobs
  Claims::Claim job = {};
  Claims::Claim file = {};
  Busy::Token saving = {};
};
using Restoring = std::shared_ptr<Restoration>;

/// Where the file was, or beside that if something else has the name by now; where its folder has gone, in that of its
/// kind.
std::optional<URL> placeFor(Program& program, const DeletedJob& deleted) {
  std::error_code failure;
  const std::filesystem::path old = deleted.url.path();
  const auto status = std::filesystem::symlink_status(old, failure);
  const IsTaken isTaken = program.actions.isTaken();
  const bool isFree = status.type() == std::filesystem::file_type::not_found && !isTaken(old);
  if (isFree && std::filesystem::is_directory(old.parent_path(), failure)) return deleted.url;
  return newFileURL(deleted.kind, deleted.name, program.foundation.roots, isTaken);
}

void show(Program& program, const std::shared_ptr<Launchd>& job) {
  if (program.editing.hasUnsavedChanges()) return;
  if (job) selectNewJob(program, job);
  program.mainWindow.refresh();
}

void load(Program& program, const URL& url) {
  const auto action = Action::load(url);
  action->cleanUp = false;
  (void)program.actions.send(action);  // the user has been told if that can't be
}

std::shared_ptr<Launchd> read(Program& program, const Restoration& restoration) {
  return Launchd::read(restoration.text, restoration.url, restoration.deleted.kind, program.foundation.scanSettings(),
                       program.platform.console);
}

/// Whether nothing is lost if the job isn't kept among the deleted ones any more.
bool isAllBack(const Restoration& restoration) {
  const std::string& bytes = restoration.deleted.bytes;
  return restoration.text == bytes || restoration.isCopyKept || !propertylist::hasComments(bytes);
}

void send(Program& program, const Restoring& restoring) {
  const DeletedJob& deleted = restoring->deleted;
  const auto job = read(program, *restoring);
  const auto action = Action::write(restoring->url, restoring->text, deleted.name);
  action->mode = deleted.mode;
  action->cleanUp = false;  // whatever is being edited when the answer comes is another job
  // Root only writes an agent's file: it is loaded in the user's session.
  const bool isUsers = deleted.kind == Kind::userAgent;
  const bool isLoaded = job && !job->isDisabled(), loadsApart = isLoaded && deleted.kind.isAgentOfEveryone();
  if (isLoaded && !loadsApart) action->kind = Action::Kind::writeAndLoad;
  action->ended = [&program, job, loadsApart, restoring](bool isWritten) {
    restoring->saving.release();
    restoring->job = {};
    restoring->file = {};
    if (!isWritten) return program.mainWindow.refresh();  // what others did meanwhile was not shown
    if (loadsApart) load(program, restoring->url);
    if (isAllBack(*restoring)) program.deletedJobs.forget(restoring->deleted.id);
    show(program, job);
  };
  (void)(isUsers ? program.actions.send(action) : program.actions.sendPrivileged(action));
}

/// The place is looked for when nothing is left that the user has to answer.
void begin(Program& program, const Restoring& restoring) {
  const DeletedJob& deleted = restoring->deleted;
  if (deleted.kind == Kind::userAgent) (void)makeAgentsFolder(program.foundation.roots);  // the write tells what fails
  const auto url = placeFor(program, deleted);
  if (!url) {
    program.mainWindow.refresh();
    return program.platform.interface.saveError();
  }
  restoring->url = *url;
  restoring->file = program.actions.claim(*url);
  send(program, restoring);
}

void authoriseAndBegin(Program& program, const Restoring& restoring) {
  restoring->saving = program.state.saving.begin();
  if (restoring->deleted.kind == Kind::userAgent) return begin(program, restoring);
  program.actions.authorise(
      [&program, restoring](bool isGranted) { isGranted ? begin(program, restoring) : program.mainWindow.refresh(); });
}

void restoreDisabled(Program& program, const Restoring& restoring) {
  const DeletedJob& deleted = restoring->deleted;
  auto text = disabledText(deleted.bytes);
  if (!text) return program.platform.interface.saveError();
  if (propertylist::hasComments(deleted.bytes)) {
    const auto kept = keepFile(program, deleted.name, deleted.bytes);
    if (!kept) return program.platform.interface.present(kept.error());
    restoring->isCopyKept = true;
  }
  restoring->text = *std::move(text);
  authoriseAndBegin(program, restoring);
}

void askAboutNamesake(Program& program, const Restoring& restoring, const Job& other) {
  const Localize& localize = program.foundation.localize;
  const DeletedJob& deleted = restoring->deleted;
  std::string consequences = localize.anotherJobHasTheNameIn(other.url.text());
  if (propertylist::hasComments(deleted.bytes)) {
    consequences += "\n\n" + localize.restoredWithoutComments(keptFilesFolder(program).string());
  }
  program.platform.interface.beginSheet({.message = localize.anotherJobHasTheName(deleted.name),
                                         .informativeText = std::move(consequences),
                                         .defaultTitle = localize.restoreDisabled(),
                                         .alternateTitle = localize.cancel(),
                                         .safeButton = Interface::alternateButton},
                                        [&program, restoring](int answer) {
                                          if (answer == Interface::defaultButton) restoreDisabled(program, restoring);
                                        });
}

}  // namespace

void deleteAndKeep(Program& program, const std::shared_ptr<Job>& job) {
  if (!DeletedJobs::canKeep(job->kind) || !propertylist::isUtf8(job->url.text()))
    return deleteWithoutKeeping(program, job);
  const auto kept = program.deletedJobs.keep(*job);
  if (!kept) return askToDeleteAnyway(program, job, kept.error());
  const bool isUsers = job->kind == Kind::userAgent;
  program.actions.deleteConfirmed(Interface::defaultButton, *job, [&program, isUsers, id = *kept](bool isDeleted) {
    if (isDeleted) return;
    // A helper that was cut off may still delete the file: then what is kept stays, and is listed once the file is
    // gone.
    const bool isAnswered = isUsers ? program.actions.connection() != nullptr : program.actions.isAuthorised();
    if (isAnswered) program.deletedJobs.forget(id);
  });
}

std::string consequenceOfDeleting(Program& program, const Job& job) {
  const Localize& localize = program.foundation.localize;
  if (!DeletedJobs::canKeep(job.kind)) return localize.youCantUndoThisAction();
  const double until = DeletedJobs::keptUntil(program.platform.clock.secondsSince1970());
  return localize.deletedJobStays(momentText(program, until));
}

std::vector<DeletedJobRow> deletedJobRows(Program& program) {
  std::vector<DeletedJobRow> rows;
  for (const DeletedJob& job : program.deletedJobs.jobs()) {
    rows.push_back({.id = job.id,
                    .name = job.name,
                    .kind = program.kinds.title(job.kind),
                    .file = job.url.text(),
                    .deleted = momentText(program, job.deletedAt),
                    .until = momentText(program, DeletedJobs::keptUntil(job.deletedAt))});
  }
  return rows;
}

void restoreDeleted(Program& program, const std::string& id) {
  auto deleted = program.deletedJobs.job(id);
  if (!deleted) return;
  auto text = textOf(deleted->bytes);
  if (!text) return program.platform.interface.saveError();
  const auto restoring = std::make_shared<Restoration>(Restoration{.deleted = *std::move(deleted)});
  restoring->text = *std::move(text);
  restoring->job = program.deletedJobs.claim(id);
  const auto job = read(program, *restoring);
  if (!job) return program.platform.interface.saveError();
  job->isNewFile = true;  // whatever stands in its old place is another job
  if (const auto other = conflictingJob(*job, job->name, program.catalogue.jobs())) {
    return askAboutNamesake(program, restoring, *other);
  }
  authoriseAndBegin(program, restoring);
}

}  // namespace mirvel
