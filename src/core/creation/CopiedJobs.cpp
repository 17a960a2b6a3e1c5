#include "core/creation/CopiedJobs.h"

#include <utility>

#include "core/actions/JobOnDisk.h"
#include "core/base/Const.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/Creation.h"
#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/session/Editing.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Selection.h"
#include "core/session/Shell.h"
#include "core/text/Ascii.h"
#include "core/text/Bidirectional.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// The reason why `Launchd::read` returned null.
Error reasonAgainst(std::string_view bytes) {
  const auto record = jobfile::Plist::readTolerantly(bytes);
  if (!record) return record.error();
  return {.code = Error::Code::BadArgument,
          .message =
              "labels that start with " + std::string(Const::excludePrefix) + " are reserved for Mirvel's own helpers"};
}

Result<std::shared_ptr<Launchd>> jobOf(const URL& file, Kind kind, const CreationContext& context) {
  const auto bytes = readFile(file.path(), JobFolder::largestFile);
  if (!bytes) return bytes.error();
  auto job = Launchd::read(*bytes, file, kind, context.foundation.scanSettings(), context.platform.console);
  if (!job) return reasonAgainst(*bytes);
  return job;
}

}  // namespace

void importAction(const CreationContext& context, bool showsHiddenFiles) {
  const auto file =
      context.platform.interface.openPanel({.showsHiddenFiles = showsHiddenFiles, .allowedTypes = {"plist"}});
  if (file) importFiles(context, {URL::file(*file)});
}

void importFiles(const CreationContext& context, std::vector<URL> files) {
  const auto sheet = context.shell.sheets.find(Sheet::Import);
  if (files.empty() || sheet == context.shell.sheets.end()) return;
  context.creation.filesToImport = std::move(files);  // for the controller of the sheet
  sheet->second();
}

std::vector<URL> importableFiles(const std::vector<std::filesystem::path>& files) {
  std::vector<URL> result;
  for (const auto& file : files) {
    std::error_code failure;
    if (Ascii::lower(file.extension().string()) != ".plist" || std::filesystem::is_directory(file, failure)) continue;
    result.push_back(URL::file(file));
  }
  return result;
}

void exportJob(const Selection& selection, const Roots& roots, Interface& interface) {
  const auto job = selection.launchd();
  if (!job) return;
  const auto text = job->plistData();
  if (!text) return interface.saveError();
  const auto file = interface.savePanel({.folder = roots.home, .name = jobFileName(job->name), .allowedType = "plist"});
  if (!file) return;
  const auto mode = static_cast<mode_t>(restrictedMode(job->url).value_or(0777));
  if (const auto written = replaceFile(*file, *text, mode); !written) interface.present(written.error());
}

std::string DuplicateController::selectedName() const {
  const auto job = m_context.selection.job();
  return job ? job->name : std::string();
}

std::string DuplicateController::title() const {
  const Localize& localize = m_context.foundation.localize;
  return bidirectionalString({CreationTexts(localize).duplicate(), selectedName()}, Const::separator,
                             localize.isRightToLeft());
}

std::string DuplicateController::nameTitle() const {
  return m_context.foundation.localize.name() + ':';
}

std::string DuplicateController::suggestedName() const {
  const auto& unsaved = m_context.creation.unsavedCopy;
  const auto job = m_context.selection.job();
  if (unsaved && job && unsaved->source.equalTo(job->url)) return unsaved->name;
  return CreationTexts(m_context.foundation.localize).copyOf(selectedName());
}

bool DuplicateController::save(const std::string& name) {
  const auto source = m_context.selection.launchd();
  if (!source || m_context.editing.hasUnsavedChanges()) return false;
  const Localize& localize = m_context.foundation.localize;
  Interface& interface = m_context.platform.interface;
  if (name == source->name) {
    interface.error(localize.renameTheItemAndTryAgain(), {});
    return false;
  }
  auto content = source->plistDictionary();
  if (content) content->set("Label", name);
  const auto copy = content ? makeNewJob(m_context, *content, source->url, source->kind) : nullptr;
  if (!copy) {
    interface.error(localize.anErrorOccurredWhileSaving(), localize.pleaseTryAgain());
    return false;
  }
  m_context.creation.unsavedCopy.reset();
  saveNewJob(m_context, copy, [&creation = m_context.creation, url = source->url, name](bool isWritten) {
    if (!isWritten) creation.unsavedCopy = {url, name};
  });
  return true;
}

ImportController::ImportController(const CreationContext& context)
    : m_context(context),
      m_delay(context.platform.mainQueue),
      m_files(std::exchange(context.creation.filesToImport, {})) {}

std::string ImportController::title() const {
  const Localize& localize = m_context.foundation.localize;
  if (!current()) return CreationTexts(localize).duplicate();
  std::vector<std::string> parts{CreationTexts(localize).importString(), current()->lastPathComponent()};
  if (m_files.size() > 1) {
    const auto number = [&localize](std::size_t value) { return localize.int_(static_cast<std::int64_t>(value)); };
    parts.push_back(CreationTexts(localize).numberOf(number(m_current + 1), number(m_files.size())));
  }
  return bidirectionalString(parts, Const::separator, localize.isRightToLeft());
}

std::string ImportController::kindTitle() const {
  return m_context.foundation.localize.forString() + ':';
}

std::string ImportController::skipTitle() const {
  return CreationTexts(m_context.foundation.localize).skip();
}

void ImportController::kindChanged(int tag) {
  m_kind = kindOfTag(tag);
}

bool ImportController::importFile() {
  if (m_isSaving) return false;
  if (!m_kind || !current()) {
    showFailure({.code = Error::Code::BadArgument, .message = "there is no file to import"});
    return false;
  }
  const auto job = jobOf(*current(), *m_kind, m_context);
  if (!job) {
    showFailure(job.error());
    return false;
  }
  m_isSaving = true;
  // The sheet is dismissed right after the last file, like that of any new job. Only between files it waits.
  const bool isLast = !hasMore();
  saveNewJob(m_context, *job, m_delay.whileOwned([this](bool isWritten) { ended(isWritten); }));
  return isLast && (m_isSaving || !current());  // `ended` may have been called already
}

/// The message is the one that the system shows for any unreadable file; the reason follows below it.
void ImportController::showFailure(Error reason) {
  reason.file = current() ? current()->text() : std::string();
  const std::string name = current() ? current()->lastPathComponent() : std::string();
  m_context.platform.interface.error(CreationTexts(m_context.foundation.localize).couldntOpenInThatFormat(name),
                                     String::firstUppercased(reason.text()));
}

/// If the job couldn't be written its file stays the current one, so that the user can try again or skip it.
void ImportController::ended(bool isWritten) {
  m_isSaving = false;
  if (isWritten) ++m_current;
  if (changed) changed();
}

bool ImportController::skip() {
  if (current() && !m_isSaving) ++m_current;
  return !current();
}

}  // namespace mirvel
