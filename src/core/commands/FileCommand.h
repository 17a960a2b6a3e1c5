#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/process/Commands.h"

namespace mirvel {

/// The command that runs a file; see `CommandRepairs::commandForFile`. A desktop entry isn't looked into.
std::string fileCommand(const std::filesystem::path& file, const Commands& commands);

/// The program and the arguments by which a desktop entry starts its application, without field codes. None if the file
/// is no such entry.
std::optional<std::vector<std::string>> desktopCommand(const std::filesystem::path& file);

}  // namespace mirvel
