#include "core/editor/RunMenu.h"

#include <algorithm>

#include "core/commands/CommandRepairs.h"
#include "core/session/Shell.h"
#include "core/text/Strings.h"
#include "core/text/Text.h"

namespace mirvel {

namespace fs = std::filesystem;

RunMenu RunMenu::of(const Shell& shell, const CommandRepairs& repairs, const std::string& command,
                    const std::string& selected) {
  RunMenu menu;
  const bool hasSheet = shell.mainWindow && shell.mainWindow->hasSheet();
  menu.offersTest = !command.empty() && !hasSheet && shell.sheets.contains(Sheet::Test);
  menu.file = offeredFile(repairs.fileArguments(command), selected);
  menu.offersEdit = menu.file && shell.editScript;
  return menu;
}

std::optional<fs::path> RunMenu::offeredFile(const std::vector<fs::path>& files, const std::string& selected) {
  if (files.empty()) return std::nullopt;
  const auto found = std::find(files.begin(), files.end(), fs::path(selected));
  if (!selected.empty() && found != files.end()) return *found;
  const std::string& first = files.front().native();
  const bool isInterpreter = first.starts_with("/bin") || first.starts_with("/usr");
  return files.size() > 1 && isInterpreter ? files[1] : files.front();
}

std::string chosenCommand(const CommandRepairs& repairs, const fs::path& file) {
  return repairs.commandForFile(file).value_or(String::quote(file.native()));
}

std::string withCommand(std::string text, const std::string& command) {
  if (!text.empty() && !text.ends_with(' ')) text += ' ';
  return text + command;
}

std::string fileWord(const fs::path& file) {
  return Text::needsQuotes(file.native()) ? String::quote(file.native()) : file.native();
}

}  // namespace mirvel
