#pragma once

#include <filesystem>
#include <string>

#include "core/support/Commands.h"

namespace mirvel {

/// The command that runs a file; see `CommandRepairs::commandForFile`.
std::string fileCommand(const std::filesystem::path& file, const Commands& commands);

}  // namespace mirvel
