#include "helpers/host/HostSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {

namespace {

Result<sockaddr_un> addressOf(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.native().size() >= sizeof address.sun_path) {
    return Error{.code = Error::Code::LimitExceeded, .message = "the path is too long for a socket", .file = path};
  }
  std::memcpy(address.sun_path, path.c_str(), path.native().size());
  return address;
}

FileDescriptor makeSocket() {
  FileDescriptor made(::socket(AF_UNIX, SOCK_STREAM, 0));
  if (!made) return made;
  ::fcntl(made.number(), F_SETFD, FD_CLOEXEC);
  wire::ignoreHangUps(made.number());
  return made;
}

/// The two calls that take an address want it as the general kind.
const sockaddr* general(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace

Result<FileDescriptor> lockFolder(const std::filesystem::path& folder) {
  const auto path = folder / "lock";
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file) return systemError(errno, "open", path);
  if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) return file;
  if (errno == EWOULDBLOCK) return FileDescriptor();
  return systemError(errno, "lock", path);
}

Result<FileDescriptor> listenAt(const std::filesystem::path& path) {
  const auto address = addressOf(path);
  if (!address) return address.error();
  FileDescriptor listening = makeSocket();
  if (!listening) return systemError(errno, "make a socket at", path);
  ::unlink(path.c_str());
  const mode_t before = ::umask(0177);
  const int bound = ::bind(listening.number(), general(*address), sizeof *address);
  const int failure = errno;
  ::umask(before);
  if (bound != 0) return systemError(failure, "make a socket at", path);
  if (::listen(listening.number(), SOMAXCONN) != 0) return systemError(errno, "listen at", path);
  ::fcntl(listening.number(), F_SETFL, O_NONBLOCK);
  return listening;
}

Result<FileDescriptor> connectTo(const std::filesystem::path& path) {
  const auto address = addressOf(path);
  if (!address) return address.error();
  FileDescriptor connection = makeSocket();
  if (!connection) return systemError(errno, "connect to", path);
  if (::connect(connection.number(), general(*address), sizeof *address) == 0) return connection;
  if (errno == ENOENT || errno == ECONNREFUSED) {
    return Error{.code = Error::Code::NotFound, .message = noHostMessage, .file = path};
  }
  return systemError(errno, "connect to", path);
}

bool isTrustedPeer(int socket) {
#ifdef SO_PEERCRED
  ucred peer{};
  socklen_t size = sizeof peer;
  if (::getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  const uid_t user = peer.uid;
#else
  uid_t user = 0;
  gid_t group = 0;
  if (::getpeereid(socket, &user, &group) != 0) return false;
#endif
  return user == 0 || user == ::geteuid();
}

}  // namespace mirvel::host
