#include "core/process/Commands.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string_view>
#include <utility>

#include "core/text/Strings.h"

namespace mirvel {

namespace {

struct Tool {
  std::string Commands::*path;
  std::string_view otherName = {};  ///< what the tool is called on Linux
};

constexpr std::array tools{
    Tool{&Commands::launchctl},
    Tool{&Commands::which},
    Tool{&Commands::open, "xdg-open"},
    Tool{&Commands::shell},
    Tool{&Commands::bash},
    Tool{&Commands::zsh},
    Tool{&Commands::csh},
    Tool{&Commands::ksh},
    Tool{&Commands::perl},
    Tool{&Commands::php},
    Tool{&Commands::python, "python"},
    Tool{&Commands::ruby},
    Tool{&Commands::swift},
    Tool{&Commands::osascript},
    Tool{&Commands::automator},
};

/// The first program of that name in the absolute folders of a search path.
std::optional<std::string> findIn(std::string_view searchPath, std::string_view name) {
  while (!searchPath.empty()) {
    const std::string_view folder = searchPath.substr(0, searchPath.find(':'));
    searchPath.remove_prefix(folder.size() < searchPath.size() ? folder.size() + 1 : folder.size());
    if (!folder.starts_with('/')) continue;
    std::string path = std::string(folder) + '/' + std::string(name);
    if (isProgram(path)) return path;
  }
  return std::nullopt;
}

std::string searchPathOf(const Environment& environment) {
  const auto path = environment.find("PATH");
  return path == environment.end() ? "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin" : path->second;
}

std::optional<std::string> find(const Tool& tool, const std::string& usualPath, const std::string& searchPath) {
  if (isProgram(usualPath)) return usualPath;
  if (auto found = findIn(searchPath, String::lastPathComponent(usualPath))) return found;
  return tool.otherName.empty() ? std::nullopt : findIn(searchPath, tool.otherName);
}

}  // namespace

bool isProgram(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<std::string> findProgram(std::string_view name, const Environment& environment) {
  if (name.empty()) return std::nullopt;
  if (name.find('/') == std::string_view::npos) return findIn(searchPathOf(environment), name);
  std::string path(name);
  return path.starts_with('/') && isProgram(path) ? std::optional(std::move(path)) : std::nullopt;
}

Commands Commands::forThisMachine(const Environment& environment) {
  const std::string searchPath = searchPathOf(environment);
  Commands commands;
  for (const Tool& tool : tools) {
    if (auto found = find(tool, commands.*tool.path, searchPath)) commands.*tool.path = *found;
  }
  return commands;
}

}  // namespace mirvel
