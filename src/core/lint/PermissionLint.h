#pragma once

#include <sys/types.h>

#include <filesystem>
#include <vector>

#include "core/lint/Findings.h"

namespace mirvel::lint {

/// Warns if users other than `user` and root could have written the file, which launchd and our hosts refuse to load.
/// Returns nothing if the file can't be opened; reading it reports that error.
std::vector<Finding> checkPermissions(const std::filesystem::path& file, uid_t user);

}  // namespace mirvel::lint
