#include "core/creation/RestoreDeleted.h"

#include <filesystem>
#include <optional>
#include <system_error>

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

void write(Program& program, const DeletedJob& deleted, const URL& url, const std::string& text) {
  const auto job = Launchd::read(text, url, deleted.kind, program.foundation.scanSettings(), program.platform.console);
  const auto action = Action::write(url, text, deleted.name);
  action->cleanUp = false;  // whatever is being edited when the answer comes is another job
  // Root only writes an agent's file: it is loaded in the user's session.
  const bool isLoaded = job && !job->isDisabled(), loadsApart = isLoaded && deleted.kind == Kind::localAgent;
  if (isLoaded && !loadsApart) action->kind = Action::Kind::writeAndLoad;
  action->ended = [&program, job, url, loadsApart, id = deleted.id](bool isWritten) {
    if (!isWritten) return;
    if (loadsApart) load(program, url);
    program.deletedJobs.forget(id);
    show(program, job);
  };
  (void)(deleted.kind == Kind::userAgent ? program.actions.send(action) : program.actions.sendPrivileged(action));
}

/// A job that would run under the same name; null: none.
std::shared_ptr<Job> namesake(const Program& program, const DeletedJob& deleted) {
  for (const auto& job : program.state.jobs) {
    if (job->kind.isLaunchd() && job->name == deleted.name && !job->isDisabled()) return job;
  }
  return nullptr;
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

bool isDisabled(const std::string& bytes) {
  const auto document = plist::read(bytes);
  const plist::Value content = document ? document->value() : plist::Value();
  const auto* const keys = content.as<plist::Dictionary>();
  const plist::Value* const disabled = keys ? keys->find("Disabled") : nullptr;
  const bool* const value = disabled ? disabled->as<bool>() : nullptr;
  return value && *value;
}

}  // namespace

void deleteAndKeep(Program& program, const std::shared_ptr<Job>& job) {
  if (!DeletedJobs::canKeep(job->kind) || !plist::isUtf8(job->url.text())) return deleteWithoutKeeping(program, job);
  const auto kept = program.deletedJobs.keep(*job);
  if (!kept) return askToDeleteAnyway(program, job, kept.error());
  program.actions.deleteConfirmed(Interface::defaultButton, *job, [&program, id = *kept](bool isDeleted) {
    if (!isDeleted) program.deletedJobs.forget(id);
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
  if (!url || !text) return program.platform.interface.saveError();
  const auto other = namesake(program, *deleted);
  if (other && !isDisabled(deleted->bytes)) return askAboutNamesake(program, *deleted, *url, *other);
  write(program, *deleted, *url, *text);
}

}  // namespace mirvel
