#include "helpers/wire/LocalSocket.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "helpers/wire/FrameSocket.h"

namespace mirvel::wire {

Result<LocalAddress> LocalAddress::of(const std::filesystem::path& path) {
  LocalAddress address;
  address.m_address.sun_family = AF_UNIX;
  // One byte is left for the terminating null, without which some systems read beyond the path.
  if (path.native().size() >= sizeof address.m_address.sun_path) {
    return Error{.code = Error::Code::LimitExceeded, .message = "the path is too long for a socket", .file = path};
  }
  std::memcpy(address.m_address.sun_path, path.c_str(), path.native().size());
  return address;
}

FileDescriptor makeLocalSocket() {
  FileDescriptor made(::socket(AF_UNIX, SOCK_STREAM, 0));
  if (!made) return made;
  ::fcntl(made.number(), F_SETFD, FD_CLOEXEC);  // macOS has no SOCK_CLOEXEC
  ignoreHangUps(made.number());
  return made;
}

std::optional<uid_t> userOfPeer(int socket) {
#ifdef SO_PEERCRED
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
  return peer.uid;
#else
  uid_t user = 0;
  gid_t group = 0;
  if (::getpeereid(socket, &user, &group) != 0) return std::nullopt;
  return user;
#endif
}

std::optional<pid_t> processOfPeer(int socket) {
#ifdef SO_PEERCRED
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
  return peer.pid;
#else
  pid_t process = 0;
  socklen_t size = sizeof process;
  if (::getsockopt(socket, SOL_LOCAL, LOCAL_PEERPID, &process, &size) != 0) return std::nullopt;
  return process;
#endif
}

}  // namespace mirvel::wire
