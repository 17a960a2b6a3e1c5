#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "helpers/process/ProcessIdentity.h"

namespace mirvel {

/// For whom the privileged helper works, and where.
struct PrivilegedOptions {
  uid_t user = 0;
  std::optional<ProcessIdentity> process = {};        ///< who may connect; none: it has passed a socket
  std::optional<std::filesystem::path> root = {};     ///< stands in for the machine's own
  std::optional<std::filesystem::path> agents = {};   ///< the user's job folder, out of which jobs are moved
  std::vector<std::filesystem::path> installed = {};  ///< what was installed for the user outside of the package
  std::optional<std::filesystem::path> host = {};     ///< the socket of the user's own job host

  /// From the words behind the program's name: `--user N`, `--process ID:START`, `--root DIR`, `--agents DIR`,
  /// `--host SOCKET`, `--installed PATH` (any number). What the last three name is touched with the user's rights only.
  /// Under pkexec the user is the one that pkexec(1) names in PKEXEC_UID, whatever the words say. Another root is for
  /// those who have this process's rights themselves: it is refused when they come from an elevation.
  static Result<PrivilegedOptions> read(const std::vector<std::string>& words, const Environment& environment,
                                        uid_t realUser);
};

}  // namespace mirvel
