#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/files/Roots.h"
#include "core/jobfile/Plist.h"

namespace mirvel {

/// The folders of the agents, which run while a user is logged in: the user's own, everyone's and the system's.
std::vector<std::filesystem::path> agentFolders(const Roots& roots);

/// A job file that may have to be loaded at login.
struct EnabledJob {
  std::filesystem::path file;
  std::string label;            ///< empty if the file can't be read as a job
  Result<void> isCertain = {};  ///< an error: the job may be disabled, since its `Disabled` is unusable
};

/// The job files of a folder that aren't disabled, sorted by file name. Like launchd, it considers only visible files
/// with the extension plist. Files that can't be read are included, so that loading them reports the reason. Empty if
/// the folder can't be opened.
std::vector<EnabledJob> enabledJobsIn(const std::filesystem::path& folder);

/// Whether the job is loaded at login and at the start of the host. Fails with `WrongType` if the value of `Disabled`
/// is unusable: such a job is loaded only on explicit request.
Result<bool> isEnabled(const jobfile::Plist& plist);

/// Whether the value of the key, or a part of it, is of a type that the record can't represent.
bool isUnusable(const jobfile::Plist& plist, jobfile::Plist::CodingKeys key);
/// The `WrongType` error for such a key; `consequence` says why the value can't just be ignored.
Error unusableError(jobfile::Plist::CodingKeys key, const std::string& consequence);

}  // namespace mirvel
