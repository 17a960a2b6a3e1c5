#pragma once

#include <filesystem>

#include "core/catalogue/Job.h"
#include "core/support/Workspace.h"

namespace mirvel {

/// Gives the jobs the icons that their user chose. These lie as "<digest of the job's path>.png" in the folder "Icons"
/// below the application support folder. Files that aren't such pictures are passed over.
void matchCustomIcons(const Jobs& jobs, const std::filesystem::path& applicationSupport, Workspace& workspace);

}  // namespace mirvel
