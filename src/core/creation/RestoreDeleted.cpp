#include "core/creation/RestoreDeleted.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "core/actions/LabelConflict.h"
#include "core/actions/MoveTarget.h"
#include "core/app/Program.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/SaveNewJob.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/support/Dates.h"

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
  if (plist::isUtf8(bytes) && bytes.find('\0') == std::string::npos) return bytes;
  const auto document = plist::read(bytes);
  if (!document) return std::nullopt;
  auto xml = plist::writeXml(document->value());
  return xml ? std::optional(*std::move(xml)) : std::nullopt;
}

std::optional<std::string> disabledText(const std::string& bytes) {
  const auto document = plist::read(bytes);
  if (!document) return std::nullopt;
  plist::Value content = document->value();
  auto* const keys = content.as<plist::Dictionary>();
  if (!keys) return std::nullopt;
  keys->set("Disabled", true);
  auto xml = plist::writeXml(content);
  return xml ? std::optional(*std::move(xml)) : std::nullopt;
}

/// Where the file was, or beside that if something else has the name by now.
std::optional<URL> placeFor(const DeletedJob& deleted, const Roots& roots) {
  std::error_code failure;
  const auto status = std::filesystem::symlink_status(deleted.url.path(), failure);
  if (status.type() == std::filesystem::file_type::not_found) return deleted.url;
  return newFileURL(deleted.kind, deleted.name, roots);
}

void show(Program& program, const std::shared_ptr<Launchd>& job) {
  if (program.state.hasUnsavedChanges) return;
  if (job) selectNewJob(program, job);
  program.mainWindow.refresh();
}

void load(Program& program, const URL& url) {
  const auto action = Action::load(url);
  action->cleanUp = false;
  (void)program.actions.send(action);  // the user has been told if that can't be
}

std::shared_ptr<Launchd> read(Program& program, const DeletedJob& deleted, const URL& url, const std::string& text) {
  return Launchd::read(text, url, deleted.kind, program.foundation.scanSettings(), program.platform.console);
}

void write(Program& program, const DeletedJob& deleted, const URL& url, const std::string& text) {
  const auto job = read(program, deleted, url, text);
  const auto action = Action::write(url, text, deleted.name);
  action->mode = deleted.mode;
  action->cleanUp = false;  // whatever is being edited when the answer comes is another job
  // Root only writes an agent's file: it is loaded in the user's session.
  const bool isUsers = deleted.kind == Kind::userAgent;
  const bool isLoaded = job && !job->isDisabled(), loadsApart = isLoaded && deleted.kind.isAgentOfEveryone();
  if (isLoaded && !loadsApart) action->kind = Action::Kind::writeAndLoad;
  const bool isAsItWas = text == deleted.bytes;
  const auto saving = std::make_shared<Busy::Token>(program.state.saving.begin());
  action->ended = [&program, job, url, loadsApart, isAsItWas, saving, id = deleted.id](bool isWritten) {
    saving->release();
    if (!isWritten) return;
    if (loadsApart) load(program, url);
    if (isAsItWas) program.deletedJobs.forget(id);  // otherwise only what is kept has all that the file had
    show(program, job);
  };
  const bool isSent = isUsers ? program.actions.send(action) : program.actions.sendPrivileged(action);
  if (!isSent) saving->release();
}

void askAboutNamesake(Program& program, const DeletedJob& deleted, const URL& url, const Job& other) {
  const Localize& localize = program.foundation.localize;
  program.platform.interface.beginSheet({.message = localize.anotherJobHasTheName(deleted.name),
                                         .informativeText = localize.anotherJobHasTheNameIn(other.url.text()),
                                         .defaultTitle = localize.restoreDisabled(),
                                         .alternateTitle = localize.cancel(),
                                         .safeButton = Interface::alternateButton},
                                        [&program, deleted, url](int answer) {
                                          const auto text = disabledText(deleted.bytes);
                                          if (answer != Interface::defaultButton) return;
                                          if (!text) return program.platform.interface.saveError();
                                          write(program, deleted, url, *text);
                                        });
}

}  // namespace

void deleteAndKeep(Program& program, const std::shared_ptr<Job>& job) {
  if (!DeletedJobs::canKeep(job->kind) || !plist::isUtf8(job->url.text())) return deleteWithoutKeeping(program, job);
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
  const auto deleted = program.deletedJobs.job(id);
  if (!deleted) return;
  const auto url = placeFor(*deleted, program.foundation.roots);
  const auto text = textOf(deleted->bytes);
  const auto job = url && text ? read(program, *deleted, *url, *text) : nullptr;
  if (!job) return program.platform.interface.saveError();
  if (const auto other = conflictingJob(*job, job->name, program.state.jobs)) {
    return askAboutNamesake(program, *deleted, *url, *other);
  }
  write(program, *deleted, *url, *text);
}

}  // namespace mirvel
