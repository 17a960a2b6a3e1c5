#pragma once

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::wire {

/// The address of a socket in the file system.
class LocalAddress {
 public:
  /// Returns `LimitExceeded` for a path that is too long for an address, about 100 bytes (unix(7)).
  static Result<LocalAddress> of(const std::filesystem::path& path);

  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&m_address); }
  socklen_t size() const { return sizeof m_address; }

 private:
  sockaddr_un m_address{};
};

/// Creates a stream socket for such addresses, close-on-exec and without SIGPIPE. Empty, with `errno` set, if it can't
/// be created.
FileDescriptor makeLocalSocket();

/// The effective user of the peer when it connected or created the pair; nullopt if the system doesn't report it.
std::optional<uid_t> userOfPeer(int socket);
/// The process that connected or created the pair; nullopt if the system doesn't report it. The process may have ended,
/// and the number been reused: compare its start time too.
std::optional<pid_t> processOfPeer(int socket);

}  // namespace mirvel::wire
