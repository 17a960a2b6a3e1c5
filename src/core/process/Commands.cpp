#include "core/process/Commands.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#ifdef __APPLE__
#include <mach-o/dyld.h>

#include <cstdint>
#endif

#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

struct Tool {
  std::string Commands::*path;
  std::string_view otherName = {};  ///< the name on Linux, if it differs
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

/// The first program of this name in the absolute folders of a search path. Relative folders, such as the empty one
/// that means the current folder, are skipped: what they contain depends on where the program was started.
std::optional<std::string> findIn(std::string_view searchPath, std::string_view name) {
  for (const std::string_view folder : String::split(searchPath, ':')) {
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

fs::path executablePath() {
  std::error_code failure;
#ifdef __APPLE__
  std::array<char, 4096> path{};
  std::uint32_t size = path.size();
  if (_NSGetExecutablePath(path.data(), &size) != 0) return {};
  fs::path result = fs::canonical(path.data(), failure);
#else
  fs::path result = fs::read_symlink("/proc/self/exe", failure);
#endif
  return failure ? fs::path() : result;
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
