#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/process/Environment.h"
#include "core/process/ProcessStatus.h"

namespace mirvel {

/// The command line of the privileged helper. It is chosen by the user, who isn't trusted.
struct PrivilegedOptions {
  uid_t user = 0;                                     ///< for whom the helper works
  std::optional<ProcessIdentity> process = {};        ///< may connect; nullopt: a socket has been passed instead
  std::optional<std::filesystem::path> root = {};     ///< the folder of another machine, for tests and the demo
  std::optional<std::filesystem::path> agents = {};   ///< the user's job folder, out of which jobs are moved
  std::vector<std::filesystem::path> installed = {};  ///< what was installed for the user outside of the package
  std::optional<std::filesystem::path> host = {};     ///< the socket of the user's job host

  /// Parses the arguments after the program's name: `--user N`, `--process ID:START`, `--root DIR`, `--agents DIR`,
  /// `--host SOCKET`, `--installed PATH` (repeatable). Without `--user`, the user is `realUser`. Returns `BadArgument`
  /// for anything else, and for paths that aren't absolute.
  ///
  /// - Under pkexec(1), which sets PKEXEC_UID and removes a value of the caller's, its user overrides `--user`.
  ///   Otherwise one user could have the helper act with the rights of another.
  /// - `--root` is refused when the rights come from an elevation. Otherwise a user could have root write files into
  ///   folders outside of the system's job folders.
  /// - `--agents`, `--host` and `--installed` need no check: these paths are accessed with the rights of `user` only.
  static Result<PrivilegedOptions> read(const std::vector<std::string>& words, const Environment& environment,
                                        uid_t realUser);
};

}  // namespace mirvel
