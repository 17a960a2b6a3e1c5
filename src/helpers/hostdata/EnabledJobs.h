#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/files/Roots.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

/// The folders of the jobs that run while a user is logged in: the user's own, those for everyone, and the system's.
std::vector<std::filesystem::path> agentFolders(const Roots& roots);

struct EnabledJob {
  std::filesystem::path file;
  std::string label;            ///< empty for a file that can't be read as a job
  Result<void> isCertain = {};  ///< or why it may be disabled
};

/// The job files of a folder that aren't disabled, sorted by name; among them files whose content can't be read.
std::vector<EnabledJob> enabledJobsIn(const std::filesystem::path& folder);

/// Whether the job is loaded at a login and at a start of the host. Fails with `WrongType` if its file doesn't say so
/// clearly; then it is loaded only when somebody asks for just that.
Result<bool> isEnabled(const jobfile::Plist& plist);

/// Whether the file has a value for the key that can't be used; it is as if it had none, with the value kept.
bool isUnusable(const jobfile::Plist& plist, jobfile::Plist::CodingKeys key);
/// The error for that; `consequence` says why it matters.
Error unusableError(jobfile::Plist::CodingKeys key, const std::string& consequence);

}  // namespace mirvel
