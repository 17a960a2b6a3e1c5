#include "helpers/jobhost/HostAutostart.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "core/support/Ascii.h"
#include "core/support/ReplaceFile.h"

namespace mirvel::host {

namespace {

/// One argument of an `Exec` line; quoted, unless it is plain, as desktop-entry-spec has it: for the
/// command line, and once more for the file's own backslashes.
std::string quoted(const std::string& text) {
  const bool isPlain = std::all_of(text.begin(), text.end(), [](char c) { return c == '-' || Ascii::isLetter(c); });
  if (isPlain) return text;
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '`' || c == '$') result += "\\\\";
    if (c == '\\') result += "\\\\\\";
    if (c == '%') result += '%';
    result += c;
  }
  return result + '"';
}

}  // namespace

Result<void> HostAutostart::install() const {
  if (m_folder.empty()) return {};
  const auto entry = m_folder / fileName;
  std::error_code failure;
  if (std::filesystem::exists(entry, failure)) return {};
  std::filesystem::create_directories(m_folder, failure);  // if that fails, so does what follows, and tells why
  std::string command;
  for (const std::string& word : m_command) command += (command.empty() ? "" : " ") + quoted(word);
  return replaceFile(entry,
                     "[Desktop Entry]\n"
                     "Type=Application\n"
                     "Name=Mirvel job host\n"
                     "Comment=Runs the jobs that were made with Mirvel\n"
                     "NoDisplay=true\n"
                     "Exec=" +
                         command + "\n");
}

}  // namespace mirvel::host
