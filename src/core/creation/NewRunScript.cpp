#include <array>

#include "core/commands/FileCommand.h"
#include "core/creation/CreationContext.h"
#include "core/creation/RunChoosers.h"
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

/// What runs a script in a language, and what its files are called.
struct Language {
  SyntaxType syntax;
  std::string Commands::*interpreter;
  const char* fileName;
};

constexpr Language shell{SyntaxType::shell, &Commands::shell, "script.sh"};
constexpr std::array languages{
    Language{SyntaxType::perl, &Commands::perl, "script.pl"},
    Language{SyntaxType::php, &Commands::php, "script.php"},
    Language{SyntaxType::python, &Commands::python, "script.py"},
    Language{SyntaxType::ruby, &Commands::ruby, "script.rb"},
    Language{SyntaxType::swift, &Commands::swift, "script.swift"},
};

const Language& languageOf(SyntaxType syntax) {
  for (const Language& language : languages) {
    if (language.syntax == syntax) return language;
  }
  return shell;
}

}  // namespace

std::optional<std::size_t> NewRunScript::insertionPoint() const {
  return isWriting() && text() == defaultText ? std::optional(defaultText.size()) : std::nullopt;
}

std::string NewRunScript::chooseTitle() const {
  return state() == State::ready ? script().shownFile : m_sheet.context.foundation.localize.ellipsis().choose();
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
  script().state = State::createNew;
  setText(std::string(defaultText));
}

void NewRunScript::setText(std::string text) {
  if (const auto syntax = SyntaxHelper::syntaxOfText(text)) script().syntaxType = *syntax;
  script().text = std::move(text);
  m_sheet.tellOfChange();
}

void NewRunScript::choose(bool showsHiddenFiles) {
  const auto file = m_sheet.context.platform.interface.openPanel({.showsHiddenFiles = showsHiddenFiles});
  if (file) becomeReady(*file, chosenCommand(m_sheet.context.repairs, *file));
  m_sheet.tellOfChange();  // a button that was clicked is drawn as its state is
}

void NewRunScript::save() {
  if (text().empty()) return;
  const Foundation& foundation = m_sheet.context.foundation;
  Interface& interface = m_sheet.context.platform.interface;
  const Language& language = languageOf(syntaxType());
  const auto file =
      interface.savePanel({.folder = foundation.roots.home, .name = language.fileName, .allowedType = {}});
  if (!file) return;
  if (const auto written = replaceFile(*file, text()); !written) return interface.present(written.error());
  becomeReady(*file, foundation.commands.*language.interpreter + ' ' + fileWord(*file));
  m_sheet.tellOfChange();
}

void NewRunScript::becomeReady(const fs::path& file, std::string run) {
  script().state = State::ready;
  script().shownFile = localizedDisplayPath(file.native(), m_sheet.context.foundation.roots.home.native());
  m_sheet.job.plist.run = std::move(run);
  m_sheet.job.plist.processType.reset();  // that of an application which was chosen before
}

void NewRunScript::clear() {
  script() = {};
}

}  // namespace mirvel
