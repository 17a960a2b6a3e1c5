#pragma once

#include <filesystem>
#include <vector>

#include "core/base/Result.h"

namespace mirvel {

/// Removes files, and folders with all that is in them, without following links. What isn't there is no error; the
/// first that can't be removed is one, and the others are removed all the same.
Result<void> removeInstalled(const std::vector<std::filesystem::path>& paths);

}  // namespace mirvel
