#pragma once

#include <filesystem>

#include "core/catalogue/Job.h"
#include "core/ports/Workspace.h"

namespace mirvel {

/// Where the store below the application support folder has the picture of this name (see `Job::iconStoreName`).
std::filesystem::path customIconFile(const std::filesystem::path& applicationSupport, const std::string& name);

/// Gives the jobs the icons that their user chose. Files that aren't such pictures are passed over.
void matchCustomIcons(const Jobs& jobs, const std::filesystem::path& applicationSupport, Workspace& workspace);

}  // namespace mirvel
