#include "helpers/jobhost/AutostartEntry.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <string_view>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/loginitems/DesktopEntry.h"
#include "core/text/Ascii.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// An argument of an `Exec` line, quoted unless it consists of letters and dashes.
std::string quoted(const std::string& text) {
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c == '-' || Ascii::isLetter(c); });
  return isPlain ? text : '"' + escapedForExec(text) + '"';
}

constexpr std::string_view execBegin = "Exec=";

std::string execLine(const std::vector<std::string>& command) {
  std::string words;
  for (const std::string& word : command) words += (words.empty() ? "" : " ") + quoted(word);
  return std::string(execBegin) + words;
}

/// Whether the line has the form that this or an earlier version writes.
bool isOwnLine(const std::string& line, const AutostartEntry& entry) {
  const std::string program = std::filesystem::path(entry.command.front()).filename();
  const std::regex form("Exec=\"[^\"]*/" + program + "\"" + entry.ownArguments);
  return std::regex_match(line, form);
}

/// The text with the command of the entry; none if its command is the same or was changed by the user.
std::optional<std::string> renewed(const std::string& text, const AutostartEntry& entry) {
  const std::string line = execLine(entry.command);
  const auto begin = text.starts_with(execBegin) ? 0 : text.find('\n' + std::string(execBegin)) + 1;
  if (begin == 0 && !text.starts_with(execBegin)) return std::nullopt;
  const auto size = std::min(text.find('\n', begin), text.size()) - begin;
  const std::string old = text.substr(begin, size);
  if (old == line || !isOwnLine(old, entry)) return std::nullopt;
  return text.substr(0, begin) + line + text.substr(begin + size);
}

}  // namespace

Result<void> AutostartEntry::install() const {
  const auto there = readFile(file, DesktopEntry::largestFile);
  if (!there && there.error().code != Error::Code::NotFound) return there.error();
  if (!there) return replace();
  const auto text = renewed(*there, *this);
  return text ? replaceFile(file, *text) : Result<void>();
}

Result<void> AutostartEntry::replace() const {
  std::error_code failure;
  std::filesystem::create_directories(file.parent_path(), failure);  // on failure, writing reports the reason
  return replaceFile(file, text());
}

std::string AutostartEntry::text() const {
  return "[Desktop Entry]\nType=Application\nName=" + name + "\nComment=" + comment + "\nNoDisplay=true\n" +
         execLine(command) + "\n";
}

Result<void> AutostartEntry::remove() const {
  std::error_code failure;
  std::filesystem::remove(file, failure);
  return failure ? Result<void>(systemError(failure.value(), "delete", file)) : Result<void>();
}

bool AutostartEntry::isEnabled() const {
  const auto there = readFile(file, DesktopEntry::largestFile);
  const auto entry = there ? DesktopEntry::read(*there, "C") : std::nullopt;
  if (!entry || entry->isHidden || entry->command.empty()) return false;
  // The key by which GNOME and its relatives disable an entry.
  for (const std::string_view line : String::split(*there, '\n')) {
    const auto sign = line.find('=');
    const bool isKey =
        sign != std::string_view::npos && String::trim(line.substr(0, sign)) == "X-GNOME-Autostart-enabled";
    if (isKey && String::trim(line.substr(sign + 1), true) == "false") return false;
  }
  return true;
}

}  // namespace mirvel
