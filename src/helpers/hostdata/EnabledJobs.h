#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/files/Roots.h"
#include "helpers/host/Host.h"

namespace mirvel::host {

/// The folders of the jobs that run while a user is logged in: the user's own, those for everyone, and the system's.
std::vector<std::filesystem::path> agentFolders(const Roots& roots);

struct EnabledJob {
  std::filesystem::path file;
  std::string label;            ///< empty for a file that can't be read as a job
  Result<void> isCertain = {};  ///< why it may be disabled all the same
};

/// The job files of a folder that aren't disabled, by name; files whose content isn't understood are among them.
std::vector<EnabledJob> enabledJobsIn(const std::filesystem::path& folder);

/// Loads the jobs of a folder that aren't disabled and whose labels aren't loaded yet, in the order of their file
/// names. One that can't be loaded, or may be disabled, is told in the log and is no reason to leave out the others.
void loadEnabledJobs(const std::filesystem::path& folder, Host& host);

}  // namespace mirvel::host
