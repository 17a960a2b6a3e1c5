#pragma once

#include <filesystem>

#include "core/catalogue/Job.h"
#include "core/ports/Workspace.h"

namespace mirvel {

/// The file of a custom icon in the application support folder. `name` is that of `Job::iconStoreName`.
std::filesystem::path customIconFile(const std::filesystem::path& applicationSupport, const std::string& name);

/// Sets the custom icons and their digests of all jobs. Files that aren't images are ignored, and so is a missing
/// folder.
void matchCustomIcons(const Jobs& jobs, const std::filesystem::path& applicationSupport, Workspace& workspace);

}  // namespace mirvel
