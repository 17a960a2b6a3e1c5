#include "helpers/host/HostSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "helpers/wire/LocalSocket.h"

namespace mirvel::host {

Result<FileDescriptor> lockFolder(const std::filesystem::path& folder) {
  const auto path = folder / "lock";
  FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file) return systemError(errno, "open", path);
  if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) return file;
  if (errno == EWOULDBLOCK) return FileDescriptor();
  return systemError(errno, "lock", path);
}

Result<FileDescriptor> listenAt(const std::filesystem::path& path) {
  const auto address = wire::LocalAddress::of(path);
  if (!address) return address.error();
  FileDescriptor listening = wire::makeLocalSocket();
  if (!listening) return systemError(errno, "make a socket at", path);
  ::unlink(path.c_str());
  const mode_t before = ::umask(0177);
  const int bound = ::bind(listening.number(), address->get(), address->size());
  const int failure = errno;
  ::umask(before);
  if (bound != 0) return systemError(failure, "make a socket at", path);
  if (::listen(listening.number(), SOMAXCONN) != 0) return systemError(errno, "listen at", path);
  ::fcntl(listening.number(), F_SETFL, O_NONBLOCK);
  return listening;
}

Result<FileDescriptor> connectTo(const std::filesystem::path& path) {
  const auto address = wire::LocalAddress::of(path);
  if (!address) return address.error();
  FileDescriptor connection = wire::makeLocalSocket();
  if (!connection) return systemError(errno, "connect to", path);
  if (::connect(connection.number(), address->get(), address->size()) == 0) return connection;
  if (errno == ENOENT || errno == ECONNREFUSED) {
    return Error{.code = Error::Code::NotFound, .message = noHostMessage, .file = path};
  }
  return systemError(errno, "connect to", path);
}

bool isTrustedPeer(int socket) {
  const auto user = wire::userOfPeer(socket);
  return user && (*user == 0 || *user == ::geteuid());
}

}  // namespace mirvel::host
