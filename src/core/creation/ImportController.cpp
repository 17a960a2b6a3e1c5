#include "core/creation/ImportController.h"

#include "core/app/Program.h"
#include "core/catalogue/JobFolder.h"
#include "core/catalogue/Launchd.h"
#include "core/creation/SaveNewJob.h"
#include "core/mainwindow/Segue.h"
#include "core/support/Bidirectional.h"
#include "core/support/Const.h"
#include "core/support/ReadFile.h"

namespace mirvel {

namespace {

/// Why bytes are no job that can be imported.
Error reasonAgainst(std::string_view bytes) {
  const auto record = launchd::Plist::read(bytes);
  if (!record) return record.error();
  return {.code = Error::Code::BadArgument,
          .message = "labels that begin with " + std::string(Const::excludePrefix) + " are for Mirvel's own helpers"};
}

Result<std::shared_ptr<Launchd>> jobOf(const URL& file, Kind kind, Program& program) {
  const auto bytes = readFile(file.path(), JobFolder::largestFile);
  if (!bytes) return bytes.error();
  auto job = Launchd::read(*bytes, file, kind, Launchd::Source::File, program.foundation.scanSettings(),
                           program.platform.console);
  if (!job) return reasonAgainst(*bytes);
  return job;
}

}  // namespace

void importAction(Program& program, bool showsHiddenFiles) {
  const auto file =
      program.platform.interface.openPanel({.showsHiddenFiles = showsHiddenFiles, .allowedTypes = {"plist"}});
  if (file) importFiles(program, {URL::file(*file)});
}

void importFiles(Program& program, std::vector<URL> files) {
  const auto sheet = program.shell.segues.find(String::importSegue);
  if (files.empty() || sheet == program.shell.segues.end()) return;
  program.creation.filesToImport = std::move(files);
  sheet->second();
}

ImportController::ImportController(Program& program)
    : m_program(program), m_files(std::exchange(program.creation.filesToImport, {})) {}

std::string ImportController::title() const {
  const Localize& localize = m_program.foundation.localize;
  if (!current()) return localize.duplicate();
  std::vector<std::string> parts{localize.importString(), current()->lastPathComponent()};
  if (m_files.size() > 1) {
    const auto number = [&localize](std::size_t value) { return localize.int_(static_cast<std::int64_t>(value)); };
    parts.push_back(localize.numberOf(number(m_current + 1), number(m_files.size())));
  }
  return bidirectionalString(parts, Const::separator, localize.isRightToLeft());
}

std::string ImportController::kindTitle() const {
  return m_program.foundation.localize.forString() + ':';
}

std::string ImportController::skipTitle() const {
  return m_program.foundation.localize.skip();
}

bool ImportController::importFile() {
  Interface& interface = m_program.platform.interface;
  if (!m_kind || !current()) {
    interface.present({.code = Error::Code::BadArgument, .message = "there is no file to import"});
    return false;
  }
  const auto job = jobOf(*current(), *m_kind, m_program);
  if (!job) {
    Error error = job.error();
    error.file = current()->text();
    interface.present(error);
    return false;
  }
  saveNewJob(m_program, *job);
  return skip();
}

bool ImportController::skip() {
  if (current()) ++m_current;
  return !current();
}

}  // namespace mirvel
