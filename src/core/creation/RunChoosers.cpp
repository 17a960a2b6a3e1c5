#include "core/creation/RunChoosers.h"

#include <array>

#include "core/commands/CommandRepairs.h"
#include "core/commands/FileCommand.h"
#include "core/creation/CreationContext.h"
#include "core/creation/InstalledApplications.h"
#include "core/editor/GeneralRules.h"
#include "core/editor/RunField.h"
#include "core/files/ReplaceFile.h"
#include "core/files/URL.h"
#include "core/scripts/SyntaxHelper.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

/// On macOS an application is a bundle with this extension; elsewhere it can be any program file.
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

/// The interpreter of a scripting language, and the suggested name for a script in it.
struct ScriptLanguage {
  SyntaxType syntax;
  std::string Commands::*interpreter;
  const char* fileName;
};

// Also the fallback for languages without an entry.
constexpr ScriptLanguage shell{SyntaxType::shell, &Commands::shell, "script.sh"};
constexpr std::array languages{
    ScriptLanguage{SyntaxType::perl, &Commands::perl, "script.pl"},
    ScriptLanguage{SyntaxType::php, &Commands::php, "script.php"},
    ScriptLanguage{SyntaxType::python, &Commands::python, "script.py"},
    ScriptLanguage{SyntaxType::ruby, &Commands::ruby, "script.rb"},
    ScriptLanguage{SyntaxType::swift, &Commands::swift, "script.swift"},
};

const ScriptLanguage& languageOf(SyntaxType syntax) {
  for (const ScriptLanguage& language : languages) {
    if (language.syntax == syntax) return language;
  }
  return shell;
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
  m_sheet.notifyChanged();
}

void NewRunApplication::clear() {
  m_sheet.job.shownApplication.clear();
}

std::optional<std::size_t> NewRunScript::insertionPoint() const {
  return isWriting() && text() == defaultText ? std::optional(defaultText.size()) : std::nullopt;
}

std::string NewRunScript::chooseTitle() const {
  return state() == State::Ready ? script().shownFile : m_sheet.context.foundation.localize.ellipsis().choose();
}

std::string NewRunScript::createNewTitle() const {
  constexpr std::string_view ellipsis = "\u2026";
  std::string title = m_sheet.context.foundation.localize.ellipsis().createNew();
  const auto at = title.find(ellipsis);
  if (at != std::string::npos) title.erase(at, ellipsis.size());
  while (title.ends_with(' ')) title.pop_back();
  return String::firstUppercased(title);
}

void NewRunScript::createNew() {
  if (isWriting()) return;
  script().state = State::CreateNew;
  setText(std::string(defaultText));
}

void NewRunScript::setText(std::string text) {
  if (const auto syntax = SyntaxHelper::syntaxOfText(text)) script().syntaxType = *syntax;
  script().text = std::move(text);
  m_sheet.notifyChanged();
}

void NewRunScript::choose(bool showsHiddenFiles) {
  const auto file = m_sheet.context.platform.interface.openPanel({.showsHiddenFiles = showsHiddenFiles});
  if (file) becomeReady(*file, chosenCommand(m_sheet.context.repairs, *file));
  m_sheet.notifyChanged();  // also after Cancel: the click has toggled the button
}

void NewRunScript::save() {
  if (text().empty()) return;
  const Foundation& foundation = m_sheet.context.foundation;
  Interface& interface = m_sheet.context.platform.interface;
  const ScriptLanguage& language = languageOf(syntaxType());
  const auto file =
      interface.savePanel({.folder = foundation.roots.home, .name = language.fileName, .allowedType = {}});
  if (!file) return;
  if (const auto written = replaceFile(*file, text()); !written) return interface.present(written.error());
  becomeReady(*file, foundation.commands.*language.interpreter + ' ' + fileWord(*file));
  m_sheet.notifyChanged();
}

void NewRunScript::becomeReady(const fs::path& file, std::string run) {
  script().state = State::Ready;
  script().shownFile = shownPath(m_sheet, file);
  m_sheet.job.plist.run = std::move(run);
  m_sheet.job.plist.processType.reset();  // may have been set for an application that was chosen before
}

void NewRunScript::clear() {
  script() = {};
}

NewRunCommand::NewRunCommand(NewSheet& sheet)
    : m_sheet(sheet),
      m_check(sheet.context.foundation.defaults, sheet.context.repairs, sheet.context.platform.fileQueue,
              sheet.context.platform.mainQueue) {}

void NewRunCommand::setText(std::string text) {
  jobfile::Plist& plist = m_sheet.job.plist;
  plist.run = GeneralRules::command(text, plist, m_sheet.context.repairs);
  plist.processType.reset();  // may have been set for an application that was chosen before
  m_sheet.job.command = std::move(text);
  check();
  m_sheet.notifyChanged();
}

void NewRunCommand::clear() {
  m_sheet.job.command.clear();
  check();
}

void NewRunCommand::check() {
  m_check.check(text(), [this](const std::vector<fs::path>& missing) {
    if (missing == m_missing) return;
    m_missing = missing;
    m_sheet.notifyChanged();
  });
}

void NewRunPage::appear() {
  const auto chosen = m_sheet.job.runPage;
  if (chosen == m_selected) return;
  m_selected = chosen;
  if (chosen == New::Run::Application) application.clear();
  if (chosen == New::Run::Script) script.clear();
  if (chosen == New::Run::Command) command.clear();
}

const RunType& NewRunPage::of(New::Run run) const {
  switch (run) {
    case New::Run::Application:
      return application;
    case New::Run::Script:
      return script;
    case New::Run::Command:
      break;
  }
  return command;
}

}  // namespace mirvel
