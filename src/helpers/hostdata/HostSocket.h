#pragma once

#include <sys/types.h>

#include <filesystem>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// The file at a path, without following a link; all zero for a path without a file.
struct FileIdentity {
  dev_t device = 0;
  ino_t node = 0;

  static FileIdentity at(const std::filesystem::path& path);
  static FileIdentity of(int file);
  bool operator==(const FileIdentity&) const = default;
};

/// The file of the lock below.
inline std::filesystem::path lockOf(const std::filesystem::path& folder) {
  return folder / "lock";
}

/// A lock that says that there is a host for this folder. None: there is one already. Held until it is closed.
Result<FileDescriptor> lockFolder(const std::filesystem::path& folder);

/// A socket of that name that takes connections, open to this user alone. Whoever calls holds the lock, so that what
/// lies there is left from a host that has gone.
///
/// The address of a socket has room for about 100 bytes (unix(7)). Where the system shows a process its own descriptors
/// as folders (Linux), paths may be longer; elsewhere such a path is `LimitExceeded`.
Result<FileDescriptor> listenAt(const std::filesystem::path& path);

/// A connection to the host. `NotRunning` if there is none.
Result<FileDescriptor> connectToHost(const std::filesystem::path& path);

/// Whether the peer is the user of this process, or root.
bool isTrustedPeer(int socket);

}  // namespace mirvel
