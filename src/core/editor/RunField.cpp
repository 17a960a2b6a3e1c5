#include "core/editor/RunField.h"

#include <algorithm>
#include <system_error>

#include "core/base/ThreadWorkQueue.h"
#include "core/commands/CommandRepairs.h"
#include "core/session/Shell.h"
#include "core/settings/Defaults.h"
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

FileCheck::FileCheck(const Defaults& defaults, const CommandRepairs& repairs, WorkQueue& fileQueue,
                     MainQueue& mainQueue)
    : m_defaults(defaults), m_repairs(repairs), m_fileQueue(fileQueue), m_mainQueue(mainQueue), m_delay(mainQueue) {}

void FileCheck::check(const std::string& command, Answer answer) {
  const int number = ++*m_last;
  const bool isWanted = m_defaults.showInvalidData();
  auto files = isWanted ? m_repairs.fileArguments(command) : std::vector<fs::path>();
  if (files.empty()) return answer({});

  auto deliver =
      m_delay.whileOwned([last = m_last, number, answer = std::move(answer)](const std::vector<fs::path>& missing) {
        if (*last == number) answer(missing);
      });
  m_fileQueue.add(
      [files = std::move(files), last = m_last, number, deliver = std::move(deliver), &queue = m_mainQueue]() mutable {
        if (*last != number) return;
        std::erase_if(files, [](const fs::path& file) {
          std::error_code failure;  // a file in a folder that only root can read doesn't count as missing
          return fs::status(file, failure).type() != fs::file_type::not_found;
        });
        queue.post([deliver = std::move(deliver), files = std::move(files)] { deliver(files); });
      });
}

}  // namespace mirvel
