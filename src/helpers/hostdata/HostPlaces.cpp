#include "helpers/hostdata/HostPlaces.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "core/files/ReplaceFile.h"
#include "helpers/wire/LocalSocket.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

Result<void> makePrivate(const fs::path& folder) {
  if (auto made = makePrivateFolder(folder); !made) return made;
  struct stat status {};
  if (::lstat(folder.c_str(), &status) != 0) return systemError(errno, "look at the folder", folder);
  const bool isOurs = S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
  if (!isOurs) {
    return Error{.code = Error::Code::NotPermitted, .message = "it isn't a folder of this user", .file = folder};
  }
  if (::chmod(folder.c_str(), 0700) != 0) return systemError(errno, "close the folder to others", folder);
  return {};
}

Error noHost(const fs::path& socket) {
  return {.code = Error::Code::NotRunning, .message = "no job host is running", .file = socket};
}

/// The address of a socket, with the open folder through which a path is reached that is too long for an address.
class SocketAddress {
 public:
  static Result<SocketAddress> of(const fs::path& path) {
    const fs::path descriptors = "/proc/self/fd";
    FileDescriptor folder;
    auto address = wire::LocalAddress::of(path);
    std::error_code failure;
    if (!address && fs::is_directory(descriptors, failure)) {
      folder = FileDescriptor(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
      if (!folder) return failedAt(path);
      address = wire::LocalAddress::of(descriptors / std::to_string(folder.number()) / path.filename());
    }
    if (!address) return address.error();
    return SocketAddress(std::move(folder), *address);
  }

  const sockaddr* get() const { return m_address.get(); }
  socklen_t size() const { return m_address.size(); }

 private:
  SocketAddress(FileDescriptor folder, const wire::LocalAddress& address)
      : m_folder(std::move(folder)), m_address(address) {}

  static Error failedAt(const fs::path& path) {
    if (errno == ENOENT) return noHost(path);
    return systemError(errno, "open the folder of", path);
  }

  FileDescriptor m_folder;
  wire::LocalAddress m_address;
};

}  // namespace

HostPlaces HostPlaces::of(const Roots& roots) {
  const fs::path folder = roots.applicationSupport / "host";
  return {.folder = folder, .socket = folder / "host.socket", .reports = roots.ownReports()};
}

HostPlaces HostPlaces::ofRoot(const Roots& roots) {
  HostPlaces places = of(roots);
  places.reports = roots.publicReports;
  places.areReportsPublic = true;
  return places;
}

Result<void> HostPlaces::make() const {
  return makePrivate(folder);
}

FileIdentity FileIdentity::at(const fs::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

FileIdentity FileIdentity::of(int file) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

Result<FileDescriptor> lockHost(const HostPlaces& places) {
  const auto path = places.lock();
  for (;;) {
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file) return systemError(errno, "open", path);
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK) return FileDescriptor();
      return systemError(errno, "lock", path);
    }
    // The file may have been deleted before it was locked, and others would lock a new one: then this tries again.
    if (FileIdentity::of(file.number()) == FileIdentity::at(path)) return file;
  }
}

Result<FileDescriptor> listenAt(const fs::path& path) {
  const auto address = SocketAddress::of(path);
  if (!address) return address.error();
  FileDescriptor listening = wire::makeLocalSocket();
  if (!listening) return systemError(errno, "make a socket at", path);
  ::unlink(path.c_str());
  const mode_t before = ::umask(0177);  // bind(2) creates the file: a later chmod(2) would leave it open for a moment
  const int bound = ::bind(listening.number(), address->get(), address->size());
  const int failure = errno;
  ::umask(before);
  if (bound != 0) return systemError(failure, "make a socket at", path);
  if (::listen(listening.number(), SOMAXCONN) != 0) return systemError(errno, "listen at", path);
  ::fcntl(listening.number(), F_SETFL, O_NONBLOCK);
  return listening;
}

Result<FileDescriptor> connectToHost(const fs::path& path) {
  const auto address = SocketAddress::of(path);
  if (!address) return address.error();
  FileDescriptor connection = wire::makeLocalSocket();
  if (!connection) return systemError(errno, "connect to", path);
  if (::connect(connection.number(), address->get(), address->size()) == 0) return connection;
  // ECONNREFUSED: the socket is left from a host that was killed.
  if (errno == ENOENT || errno == ECONNREFUSED) return noHost(path);
  return systemError(errno, "connect to", path);
}

bool isTrustedPeer(int socket) {
  const auto user = wire::userOfPeer(socket);
  return user && (*user == 0 || *user == ::geteuid());
}

}  // namespace mirvel
