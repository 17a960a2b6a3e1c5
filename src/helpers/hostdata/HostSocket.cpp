#include "helpers/hostdata/HostSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "helpers/wire/LocalSocket.h"

namespace mirvel {

namespace {

Error noHost(const std::filesystem::path& socket) {
  return {.code = Error::Code::NotRunning, .message = "no job host is running", .file = socket};
}

/// The address of a socket's path. One that is too long for an address is reached by way of its open folder, where the
/// system shows a process its descriptors as folders; elsewhere it is refused.
class Address {
 public:
  static Result<Address> of(const std::filesystem::path& path) {
    const std::filesystem::path descriptors = "/proc/self/fd";
    FileDescriptor folder;
    auto address = wire::LocalAddress::of(path);
    std::error_code failure;
    if (!address && std::filesystem::is_directory(descriptors, failure)) {
      folder = FileDescriptor(::open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
      if (!folder) return failedAt(path);
      address = wire::LocalAddress::of(descriptors / std::to_string(folder.number()) / path.filename());
    }
    if (!address) return address.error();
    return Address(std::move(folder), *address);
  }

  const sockaddr* get() const { return m_address.get(); }
  socklen_t size() const { return m_address.size(); }

 private:
  Address(FileDescriptor folder, const wire::LocalAddress& address) : m_folder(std::move(folder)), m_address(address) {}

  static Error failedAt(const std::filesystem::path& path) {
    if (errno == ENOENT) return noHost(path);
    return systemError(errno, "open the folder of", path);
  }

  FileDescriptor m_folder;
  wire::LocalAddress m_address;
};

/// Whether the open file is still the one at that path: a lock on one that was removed keeps nobody out.
bool isAt(const std::filesystem::path& path, int file) {
  return FileIdentity::of(file) == FileIdentity::at(path);
}

}  // namespace

FileIdentity FileIdentity::at(const std::filesystem::path& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

FileIdentity FileIdentity::of(int file) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

Result<FileDescriptor> lockFolder(const std::filesystem::path& folder) {
  const auto path = lockOf(folder);
  for (;;) {
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file) return systemError(errno, "open", path);
    if (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
      if (errno == EWOULDBLOCK) return FileDescriptor();
      return systemError(errno, "lock", path);
    }
    if (isAt(path, file.number())) return file;
  }
}

Result<FileDescriptor> listenAt(const std::filesystem::path& path) {
  const auto address = Address::of(path);
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

Result<FileDescriptor> connectToHost(const std::filesystem::path& path) {
  const auto address = Address::of(path);
  if (!address) return address.error();
  FileDescriptor connection = wire::makeLocalSocket();
  if (!connection) return systemError(errno, "connect to", path);
  if (::connect(connection.number(), address->get(), address->size()) == 0) return connection;
  if (errno == ENOENT || errno == ECONNREFUSED) {
    return noHost(path);
  }
  return systemError(errno, "connect to", path);
}

bool isTrustedPeer(int socket) {
  const auto user = wire::userOfPeer(socket);
  return user && (*user == 0 || *user == ::geteuid());
}

}  // namespace mirvel
