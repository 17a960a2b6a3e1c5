#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <vector>

#include "core/base/Result.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// What a user's application wants to be removed.
struct Installation {
  uid_t user;
  std::optional<std::filesystem::path> host;     ///< the socket of the host of the user's jobs
  std::vector<std::filesystem::path> installed;  ///< files and folders
};

/// Ends the job hosts, root's own first, and removes what they have installed; job files and logs are kept. The paths
/// are the user's, so they are accessed with the user's rights: root could be made to delete any file. Blocks until the
/// hosts have ended. If one of them doesn't end, returns why and removes nothing, since its lock and socket are among
/// the files.
Result<void> uninstall(const Installation& installation, JobHost& ownHost);

}  // namespace mirvel
