#include "core/creation/RestoreDeleted.h"

#include <filesystem>
#include <optional>
#include <system_error>

#include "core/actions/ActionController.h"
#include "core/actions/CommentedFile.h"
#include "core/actions/DeletedJobs.h"
#include "core/actions/JobOnDisk.h"
#include "core/actions/LabelConflict.h"
#include "core/catalogue/KindTexts.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/locale/Dates.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/session/Busy.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"
#include "core/session/Editing.h"
#include "core/session/Fetcher.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace {

std::string momentText(const CreationContext& context, double seconds) {
  return Date::standardText(seconds, context.foundation.localize.timeLocale());
}

/// Requests contain text, so a binary file, or one in another encoding than UTF-8, becomes XML with the same values.
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

/// A restoration in progress. Its claims prevent a second restoration of the job and other saves to the same path.
struct Restoration {
  DeletedJob deleted;
  std::string text = {};  ///< of the new file
  URL url = deleted.url;
  bool isCopyKept = false;  ///< whether `keepFile` has kept the file with its comments
  Claims::Claim job = {};
  Claims::Claim file = {};
  Busy::Token saving = {};
};
using Restoring = std::shared_ptr<Restoration>;

/// The former path of the file; if it is in use, or its folder doesn't exist any more, a new one in the folder of its
/// kind. Nullopt if the kind has no folder.
std::optional<URL> placeFor(const CreationContext& context, const DeletedJob& deleted) {
  std::error_code failure;
  const std::filesystem::path old = deleted.url.path();
  const auto status = std::filesystem::symlink_status(old, failure);
  const IsTaken isTaken = context.actions.isTaken();
  const bool isFree = status.type() == std::filesystem::file_type::not_found && !isTaken(old);
  if (isFree && std::filesystem::is_directory(old.parent_path(), failure)) return deleted.url;
  return newFileURL(deleted.kind, deleted.name, context.foundation.roots, isTaken);
}

void show(const CreationContext& context, const std::shared_ptr<Launchd>& job) {
  if (context.editing.hasUnsavedChanges()) return;
  if (job) context.currentMode.select(job);
  context.fetcher.refresh();
}

void load(const CreationContext& context, const URL& url) {
  const auto action = Action::load(url);
  action->cleanUp = false;
  (void)context.actions.send(action);  // `send` shows a failure itself
}

std::shared_ptr<Launchd> read(const CreationContext& context, const Restoration& restoration) {
  return Launchd::read(restoration.text, restoration.url, restoration.deleted.kind, context.foundation.scanSettings(),
                       context.platform.console);
}

/// Whether the job can be removed from the deleted ones without losing anything.
bool isAllBack(const Restoration& restoration) {
  const std::string& bytes = restoration.deleted.bytes;
  return restoration.text == bytes || restoration.isCopyKept || !propertylist::hasComments(bytes);
}

void send(const CreationContext& context, const Restoring& restoring) {
  const DeletedJob& deleted = restoring->deleted;
  const auto job = read(context, *restoring);  // by its new URL
  const auto action = Action::write(restoring->url, restoring->text, deleted.name);
  action->mode = deleted.mode;
  action->cleanUp = false;  // by the time of the reply the user may be editing another job
  // The privileged helper only writes the file of an agent, which must be loaded in the user's session.
  const bool isUsers = deleted.kind == Kind::userAgent;
  const bool isLoaded = job && !job->isDisabled(), loadsApart = isLoaded && deleted.kind.isAgentOfEveryone();
  if (isLoaded && !loadsApart) action->kind = Action::Kind::WriteAndLoad;
  action->ended = [&context, job, loadsApart, restoring](bool isWritten) {
    restoring->saving.release();
    restoring->job = {};
    restoring->file = {};
    if (!isWritten) return context.fetcher.refresh();  // scans aren't published during a restoration
    if (loadsApart) load(context, restoring->url);
    if (isAllBack(*restoring)) context.deletedJobs.forget(restoring->deleted.id);
    show(context, job);
  };
  (void)(isUsers ? context.actions.send(action) : context.actions.sendPrivileged(action));
}

/// Chooses the path only now, after the last question: it may have been taken while the user was asked.
void begin(const CreationContext& context, const Restoring& restoring) {
  const DeletedJob& deleted = restoring->deleted;
  if (deleted.kind == Kind::userAgent)
    (void)makeAgentsFolder(context.foundation.roots);  // the write reports the failure
  const auto url = placeFor(context, deleted);
  if (!url) {
    context.fetcher.refresh();
    return context.platform.interface.saveError();
  }
  restoring->url = *url;
  restoring->file = context.actions.claim(*url);
  send(context, restoring);
}

void authoriseAndBegin(const CreationContext& context, const Restoring& restoring) {
  restoring->saving = context.saving.begin();
  if (restoring->deleted.kind == Kind::userAgent) return begin(context, restoring);
  context.actions.authorise(
      [&context, restoring](bool isGranted) { isGranted ? begin(context, restoring) : context.fetcher.refresh(); });
}

void restoreDisabled(const CreationContext& context, const Restoring& restoring) {
  const DeletedJob& deleted = restoring->deleted;
  auto text = disabledText(deleted.bytes);
  if (!text) return context.platform.interface.saveError();
  if (propertylist::hasComments(deleted.bytes)) {
    const auto kept = keepFile(context.foundation.roots, context.platform.clock, deleted.name, deleted.bytes);
    if (!kept) return context.platform.interface.present(kept.error());
    restoring->isCopyKept = true;
  }
  restoring->text = *std::move(text);
  authoriseAndBegin(context, restoring);
}

void askAboutNamesake(const CreationContext& context, const Restoring& restoring, const Job& other) {
  const Localize& localize = context.foundation.localize;
  const DeletedJob& deleted = restoring->deleted;
  std::string consequences = CreationTexts(localize).anotherJobHasTheNameIn(other.url.text());
  if (propertylist::hasComments(deleted.bytes)) {
    consequences +=
        "\n\n" + CreationTexts(localize).restoredWithoutComments(keptFilesFolder(context.foundation.roots).string());
  }
  context.platform.interface.beginSheet({.message = CreationTexts(localize).anotherJobHasTheName(deleted.name),
                                         .informativeText = std::move(consequences),
                                         .defaultTitle = CreationTexts(localize).restoreDisabled(),
                                         .alternateTitle = localize.cancel(),
                                         .safeButton = Interface::alternateButton},
                                        [&context, restoring](int answer) {
                                          if (answer == Interface::defaultButton) restoreDisabled(context, restoring);
                                        });
}

}  // namespace

std::vector<DeletedJobRow> deletedJobRows(const CreationContext& context) {
  std::vector<DeletedJobRow> rows;
  for (const DeletedJob& job : context.deletedJobs.jobs()) {
    rows.push_back({.id = job.id,
                    .name = job.name,
                    .kind = context.kinds.title(job.kind),
                    .file = job.url.text(),
                    .deleted = momentText(context, job.deletedAt),
                    .until = momentText(context, DeletedJobs::keptUntil(job.deletedAt))});
  }
  return rows;
}

void restoreDeleted(const CreationContext& context, const std::string& id) {
  auto deleted = context.deletedJobs.job(id);
  if (!deleted) return;
  auto text = textOf(deleted->bytes);
  if (!text) return context.platform.interface.saveError();
  const auto restoring = std::make_shared<Restoration>(Restoration{.deleted = *std::move(deleted)});
  restoring->text = *std::move(text);
  restoring->job = context.deletedJobs.claim(id);
  const auto job = read(context, *restoring);
  if (!job) return context.platform.interface.saveError();
  job->isNewFile = true;  // a file at its former path belongs to another job
  if (const auto other = conflictingJob(*job, job->name, context.catalogue.jobs())) {
    return askAboutNamesake(context, restoring, *other);
  }
  authoriseAndBegin(context, restoring);
}

}  // namespace mirvel
