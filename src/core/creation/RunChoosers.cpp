#include "core/creation/RunChoosers.h"

#include "core/commands/CommandRepairs.h"
#include "core/creation/CreationContext.h"
#include "core/creation/InstalledApplications.h"
#include "core/editor/GeneralRules.h"
#include "core/editor/RunField.h"
#include "core/files/URL.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// macOS has applications that are marked as such; elsewhere any program will do.
std::vector<std::string> applicationTypes() {
#ifdef __APPLE__
  return {"app"};
#else
  return {};
#endif
}

std::string shownPath(const NewSheet& sheet, const fs::path& file) {
  return localizedDisplayPath(file.native(), sheet.context.foundation.roots.home.native());
}

}  // namespace

void NewRunApplication::choose(bool showsHiddenFiles) {
  const auto file = m_sheet.context.platform.interface.openPanel(
      {.showsHiddenFiles = showsHiddenFiles, .allowedTypes = applicationTypes()});
  if (file) take(*file, shownPath(m_sheet, *file));
}

void NewRunApplication::choose(const InstalledApplication& application) {
  take(application.path, application.name);
}

bool NewRunApplication::isChosen(const InstalledApplication& application) const {
  return !shown().empty() && m_sheet.job.application == application.path;
}

void NewRunApplication::take(const fs::path& file, std::string shown) {
  m_sheet.job.shownApplication = std::move(shown);
  m_sheet.job.application = file;
  m_sheet.job.plist.run = chosenCommand(m_sheet.context.repairs, file);
  m_sheet.job.plist.processType = "Interactive";
  m_sheet.tellOfChange();
}

void NewRunApplication::clear() {
  m_sheet.job.shownApplication.clear();
}

NewRunCommand::NewRunCommand(NewSheet& sheet)
    : m_sheet(sheet),
      m_check(sheet.context.foundation.defaults, sheet.context.repairs, sheet.context.platform.fileQueue,
              sheet.context.platform.mainQueue) {}

void NewRunCommand::setText(std::string text) {
  jobfile::Plist& plist = m_sheet.job.plist;
  plist.run = GeneralRules::command(text, plist, m_sheet.context.repairs);
  plist.processType.reset();  // that of an application which was chosen before
  m_sheet.job.command = std::move(text);
  check();
  m_sheet.tellOfChange();
}

void NewRunCommand::clear() {
  m_sheet.job.command.clear();
  check();
}

void NewRunCommand::check() {
  m_check.check(text(), [this](const std::vector<fs::path>& missing) {
    if (missing == m_missing) return;
    m_missing = missing;
    m_sheet.tellOfChange();
  });
}

void NewRunPage::appear() {
  const auto chosen = m_sheet.job.runPage;
  if (chosen == m_selected) return;
  m_selected = chosen;
  if (chosen == New::Run::application) application.clear();
  if (chosen == New::Run::script) script.clear();
  if (chosen == New::Run::command) command.clear();
}

const RunType& NewRunPage::of(New::Run run) const {
  switch (run) {
    case New::Run::application:
      return application;
    case New::Run::script:
      return script;
    case New::Run::command:
      break;
  }
  return command;
}

}  // namespace mirvel
