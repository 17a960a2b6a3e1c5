#pragma once

#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>

#include <filesystem>
#include <optional>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::wire {

/// The place of a socket in the file system. `LimitExceeded` for a path of more than about 100 bytes (unix(7)).
class LocalAddress {
 public:
  static Result<LocalAddress> of(const std::filesystem::path& path);

  const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&m_address); }
  socklen_t size() const { return sizeof m_address; }

 private:
  sockaddr_un m_address{};
};

/// A stream socket of that sort, close-on-exec and without signals; without a number where there is none, as `errno`
/// says.
FileDescriptor makeLocalSocket();

/// Whose process the peer is; none if the system doesn't tell.
std::optional<uid_t> userOfPeer(int socket);
/// Which process connected, or made the pair; none if the system doesn't tell.
std::optional<pid_t> processOfPeer(int socket);

}  // namespace mirvel::wire
