#pragma once

#include <filesystem>

#include "core/support/FileDescriptor.h"
#include "core/support/Result.h"

namespace mirvel::host {

/// A lock that says that there is a host for this folder. None: there is one already. Held until it is closed.
Result<FileDescriptor> lockFolder(const std::filesystem::path& folder);

/// A socket of that name that takes connections, open to this user alone. Whoever calls holds the lock, so that what
/// lies there is left from a host that has gone.
Result<FileDescriptor> listenAt(const std::filesystem::path& path);

/// The message of the error of `connectTo` if no host is running.
inline constexpr const char* noHostMessage = "no job host is running";

/// A connection to the host.
Result<FileDescriptor> connectTo(const std::filesystem::path& path);

/// Whether the peer is the user of this process, or root.
bool isTrustedPeer(int socket);

}  // namespace mirvel::host
