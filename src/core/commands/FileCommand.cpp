#include "core/commands/FileCommand.h"

#include <sys/stat.h>

#include <array>
#include <optional>
#include <string_view>

#include "core/files/ReadFile.h"
#include "core/loginitems/DesktopEntry.h"
#include "core/propertylist/Reader.h"
#include "core/text/Ascii.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

struct ToolOfExtension {
  std::string_view extension;
  std::string Commands::*command;
};

constexpr std::array interpreters{
    ToolOfExtension{"scpt", &Commands::osascript},
    ToolOfExtension{"automator", &Commands::automator},
    ToolOfExtension{"workflow", &Commands::automator},
    ToolOfExtension{"pl", &Commands::perl},
    ToolOfExtension{"php", &Commands::php},
    ToolOfExtension{"py", &Commands::python},
    ToolOfExtension{"rb", &Commands::ruby},
    ToolOfExtension{"sh", &Commands::shell},
    ToolOfExtension{"bash", &Commands::bash},
};

/// The extension without its dot: "sh" for "x.sh".
std::string extensionOf(const fs::path& file) {
  const std::string extension = file.extension().string();
  return extension.empty() ? extension : extension.substr(1);
}

/// The name of the executable according to the bundle's property list; by default the name of the bundle.
std::string executableName(const fs::path& bundle) {
  constexpr std::size_t largestList = std::size_t{1} << 20U;
  const auto info = propertylist::readDictionary(bundle / "Contents" / "Info.plist", largestList);
  const auto* const name = info ? info->get<std::string>("CFBundleExecutable") : nullptr;
  return name ? *name : bundle.stem().string();
}

std::optional<fs::path> executableOf(const fs::path& bundle) {
  const std::string name = executableName(bundle);
  if (name.empty() || name.find_first_of(std::string_view("/\0", 2)) != std::string::npos) return std::nullopt;
  const fs::path executable = bundle / "Contents" / "MacOS" / name;
  std::error_code ignored;
  if (!fs::is_regular_file(executable, ignored)) return std::nullopt;
  return executable;
}

/// Whether the mode is one of three that programs usually have. A file with another mode might be executable, too, but
/// the interpreter works in any case.
bool runsDirectly(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0 || S_ISDIR(status.st_mode)) return false;
  const mode_t permissions = status.st_mode & 07777U;
  return permissions == 0645 || permissions == 0755 || permissions == 0744;
}

/// The interpreter of the "#!" line, including its arguments.
std::optional<std::string> declaredInterpreter(const fs::path& file) {
  constexpr std::size_t longestLine = 4096;
  const auto start = readBeginning(file, longestLine);
  if (!start || !start->starts_with("#!")) return std::nullopt;
  const std::string_view line = std::string_view(*start).substr(2, start->find('\n') - 2);
  const std::string_view interpreter = String::trim(line, true);
  if (interpreter.empty() || interpreter.find('\0') != std::string_view::npos) return std::nullopt;
  return std::string(interpreter);
}

std::optional<std::string> interpreterOf(const fs::path& file, const Commands& commands) {
  const std::string extension = Ascii::lower(extensionOf(file));
  if (extension.empty()) return declaredInterpreter(file);
  for (const ToolOfExtension& interpreter : interpreters) {
    if (interpreter.extension == extension) return commands.*interpreter.command;
  }
  return std::nullopt;
}

}  // namespace

std::string fileCommand(const fs::path& path, const Commands& commands) {
  const fs::path file = path.has_filename() ? path : path.parent_path();  // without the trailing slash of a folder
  std::string quoted = String::quote(file.string());
  if (extensionOf(file) == "app") {
    const auto executable = executableOf(file);
    return executable ? String::quote(executable->string()) : quoted;
  }
  if (runsDirectly(file)) return quoted;
  return interpreterOf(file, commands).value_or(commands.open) + ' ' + quoted;
}

std::optional<std::vector<std::string>> desktopCommand(const fs::path& file) {
  if (extensionOf(file) != "desktop") return std::nullopt;
  const auto bytes = readFile(file, DesktopEntry::largestFile);
  auto entry = bytes ? DesktopEntry::read(*bytes, {}) : std::nullopt;
  if (!entry || entry->type != "Application" || entry->command.empty() || entry->command.front().empty()) {
    return std::nullopt;
  }
  return std::move(entry->command);
}

}  // namespace mirvel
