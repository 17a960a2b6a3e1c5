#include "helpers/jobhost/HostAutostart.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/loginitems/DesktopEntry.h"
#include "core/text/Ascii.h"

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

/// Whether the line has the form that this or an earlier version writes, so that it isn't a change of the user.
bool isOwnLine(const std::string& line) {
  static const std::regex form("Exec=\"[^\"]*/mirvel-host\"( --login)?( --detach)( --root \"[^\"]*\")?");
  return std::regex_match(line, form);
}

/// The text with `line` as its command; none if its command is the same or was changed by the user.
std::optional<std::string> renewed(const std::string& text, const std::string& line) {
  const auto begin = text.starts_with(execBegin) ? 0 : text.find('\n' + std::string(execBegin)) + 1;
  if (begin == 0 && !text.starts_with(execBegin)) return std::nullopt;
  const auto size = std::min(text.find('\n', begin), text.size()) - begin;
  const std::string old = text.substr(begin, size);
  if (old == line || !isOwnLine(old)) return std::nullopt;
  return text.substr(0, begin) + line + text.substr(begin + size);
}

}  // namespace

Result<void> HostAutostart::install() const {
  constexpr std::size_t largest = 65536;
  if (m_folder.empty()) return {};
  const auto entry = m_folder / fileName;
  const std::string line = execLine(m_command);
  const auto there = readFile(entry, largest);
  if (!there && there.error().code != Error::Code::NotFound) return there.error();
  if (there) {
    const auto text = renewed(*there, line);
    return text ? replaceFile(entry, *text) : Result<void>();
  }
  std::error_code failure;
  std::filesystem::create_directories(m_folder, failure);  // on failure, writing reports the reason
  return replaceFile(entry,
                     "[Desktop Entry]\n"
                     "Type=Application\n"
                     "Name=Mirvel job host\n"
                     "Comment=Runs the jobs that were made with Mirvel\n"
                     "NoDisplay=true\n" +
                         line + "\n");
}

}  // namespace mirvel
