#pragma once

#include <sys/types.h>

#include <filesystem>

#include "core/base/Result.h"

namespace mirvel {

/// The mode of a file that nobody but its user is to read.
inline constexpr mode_t privateFile = 0600;

/// Makes a folder, and those above it that are missing, for their user alone. What is there already stays as it is.
Result<void> makePrivateFolder(const std::filesystem::path& folder);

}  // namespace mirvel
