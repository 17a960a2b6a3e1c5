#include "core/creation/ImportController.h"

#include "core/base/Const.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/Creation.h"
#include "core/creation/CreationContext.h"
#include "core/creation/CreationTexts.h"
#include "core/creation/SaveNewJob.h"
#include "core/files/ReadFile.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/session/Shell.h"
#include "core/text/Ascii.h"
#include "core/text/Bidirectional.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// Why bytes are no job that can be imported.
Error reasonAgainst(std::string_view bytes) {
  const auto record = jobfile::Plist::readTolerantly(bytes);
  if (!record) return record.error();
  return {.code = Error::Code::BadArgument,
          .message = "labels that begin with " + std::string(Const::excludePrefix) + " are for Mirvel's own helpers"};
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
  context.creation.filesToImport = std::move(files);
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

bool ImportController::importFile() {
  if (m_isSaving) return false;
  if (!m_kind || !current()) {
    tellOfFailure({.code = Error::Code::BadArgument, .message = "there is no file to import"});
    return false;
  }
  const auto job = jobOf(*current(), *m_kind, m_context);
  if (!job) {
    tellOfFailure(job.error());
    return false;
  }
  m_isSaving = true;
  const bool isLast = !hasMore();
  saveNewJob(m_context, *job, m_delay.whileOwned([this](bool isWritten) { ended(isWritten); }));
  return isLast && (m_isSaving || !current());
}

/// What the system says of any file that can't be read, and below it why.
void ImportController::tellOfFailure(Error reason) {
  reason.file = current() ? current()->text() : std::string();
  const std::string name = current() ? current()->lastPathComponent() : std::string();
  m_context.platform.interface.error(CreationTexts(m_context.foundation.localize).couldntOpenInThatFormat(name),
                                     String::firstUppercased(reason.text()));
}

/// A job that couldn't be written leaves its file where it is: the user was told why, and tries again or leaves it out.
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
