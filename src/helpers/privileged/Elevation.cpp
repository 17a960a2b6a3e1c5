#include "helpers/privileged/Elevation.h"

#include <optional>
#include <utility>

#include "core/support/Strings.h"
#include "helpers/privileged/Listener.h"

namespace mirvel {

namespace {

std::optional<std::string> bytesOfHex(const std::string& text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    const auto high = digits.find(text[i]), low = digits.find(text[i + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    bytes += static_cast<char>(high << 4U | low);
  }
  return text.size() % 2 == 0 && !bytes.empty() ? std::optional(bytes) : std::nullopt;
}

bool wasCancelled(const Elevation& elevation, const ProcessResult& result) {
  constexpr int dismissed = 126;
  if (elevation.way == Elevation::Way::Pkexec) return result.exitStatus == dismissed;
  return elevation.way == Elevation::Way::Osascript && result.complaints.find("(-128)") != std::string::npos;
}

bool wasRefused(const Elevation& elevation, const ProcessResult& result) {
  constexpr int notAuthorised = 127;
  if (elevation.way == Elevation::Way::Pkexec) return result.exitStatus == notAuthorised;
  return elevation.way == Elevation::Way::Osascript && result.complaints.find("(-60005)") != std::string::npos;
}

Error noHelper(const ProcessResult& result) {
  const std::string said(String::trim(result.complaints, true));
  return {.code = Error::Code::Io,
          .message = "the privileged helper can't be started" + (said.empty() ? "" : ": " + said)};
}

}  // namespace

std::vector<std::string> Elevation::command(const std::string& program,
                                            const std::vector<std::string>& arguments) const {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  if (way == Way::None) return words;
  if (way == Way::Pkexec) {
    words.insert(words.begin(), tool);
    return words;
  }
  words.insert(words.end(), {"--user", std::to_string(user)});
  std::string line;
  for (const auto& word : words) line += (line.empty() ? "" : " ") + String::quote(word);
  return {tool, "-e",
          "do shell script " + String::quoteWithBackslashes(line) +
              " without altering line endings with administrator privileges"};
}

Result<Elevated> startPrivileged(const Elevation& elevation, const std::string& program,
                                 const std::vector<std::string>& arguments, ProcessRunner& runner) {
  const auto words = elevation.command(program, arguments);
  const auto result = runner.run(words[0], {words.begin() + 1, words.end()});
  if (!result) return result.error();
  if (result->exitStatus != 0) {
    const bool isCancelled = wasCancelled(elevation, *result);
    if (!isCancelled && !wasRefused(elevation, *result)) return noHelper(*result);
    return Elevated{.isCancelled = isCancelled};
  }
  const std::string said(String::trim(result->output, true));
  const std::size_t end = said.find('\n');
  auto authData = end == std::string::npos ? std::nullopt : bytesOfHex(said.substr(end + 1));
  if (!authData) return noHelper(*result);
  auto socket = connectTo(said.substr(0, end));
  if (!socket) return std::move(socket).error();
  return Elevated{.socket = *std::move(socket), .authData = *std::move(authData)};
}

}  // namespace mirvel
