#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/process/Commands.h"

namespace mirvel {

/// The command that runs a file, with quoted paths; see `CommandRepairs::commandForFile`. Desktop entries are treated
/// like any other file. Reads the beginning of the file or the property list of the bundle. Never fails: a file that
/// can't be read, or doesn't exist, is judged by its name.
std::string fileCommand(const std::filesystem::path& file, const Commands& commands);

/// The program and arguments of a desktop entry that starts an application, without field codes (such as "%f"). The
/// program can be a name without path. None if the file isn't such an entry.
std::optional<std::vector<std::string>> desktopCommand(const std::filesystem::path& file);

}  // namespace mirvel
