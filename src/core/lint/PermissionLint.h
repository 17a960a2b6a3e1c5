#pragma once

#include <sys/types.h>

#include <filesystem>
#include <vector>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// What is said of the file itself: others could have written it, so that it isn't loaded as a job of that user.
/// Nothing of a file that can't be opened, which whoever reads it tells.
std::vector<Finding> checkPermissions(const std::filesystem::path& file, uid_t user);

}  // namespace mirvel::lint
