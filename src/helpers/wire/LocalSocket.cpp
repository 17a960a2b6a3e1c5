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
  FileDescriptor made(::socket(AF_UNIX, streamSocket, 0));
  if (!made) return made;
  ::fcntl(made.number(), F_SETFD, FD_CLOEXEC);
  ignoreHangUps(made.number());
  return made;
}

#ifdef SO_PEERCRED

namespace {

std::optional<ucred> peerOf(int socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return ::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 ? std::optional(peer) : std::nullopt;
}

}  // namespace

std::optional<uid_t> userOfPeer(int socket) {
  const auto peer = peerOf(socket);
  return peer ? std::optional(peer->uid) : std::nullopt;
}

std::optional<pid_t> processOfPeer(int socket) {
  const auto peer = peerOf(socket);
  return peer ? std::optional(peer->pid) : std::nullopt;
}

#else

std::optional<uid_t> userOfPeer(int socket) {
  uid_t user = 0;
  gid_t group = 0;
  if (::getpeereid(socket, &user, &group) != 0) return std::nullopt;
  return user;
}

std::optional<pid_t> processOfPeer(int socket) {
  pid_t process = 0;
  socklen_t size = sizeof process;
  if (::getsockopt(socket, SOL_LOCAL, LOCAL_PEERPID, &process, &size) != 0) return std::nullopt;
  return process;
}

#endif

}  // namespace mirvel::wire
