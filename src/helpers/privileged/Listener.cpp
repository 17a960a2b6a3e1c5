#include "helpers/privileged/Listener.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "helpers/wire/LocalSocket.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr mode_t passable = 0711;  // others may open the socket by its path, but not list or change the folder
constexpr mode_t ownerOnly = 0600;

}  // namespace

Result<OwnFolder> OwnFolder::make(const fs::path& parent) {
  std::string name = parent / "mirvel-XXXXXX";
  if (!::mkdtemp(name.data())) return systemError(errno, "make a folder", name);
  return OwnFolder(name);
}

OwnFolder::OwnFolder(OwnFolder&& other) noexcept : m_path(std::exchange(other.m_path, {})) {}

OwnFolder::~OwnFolder() {
  if (m_path.empty()) return;
  std::error_code failure;
  fs::remove_all(m_path, failure);  // /run is emptied when the machine restarts
}

bool AllowedPeer::isPeerOf(int socket) const {
  if (wire::userOfPeer(socket) != user) return false;
  if (!process) return true;
  const auto peer = wire::processOfPeer(socket);
  return peer && ProcessIdentity::of(*peer) == process;
}

Result<Listener> Listener::make(const fs::path& parent, const AllowedPeer& peer) {
  auto folder = OwnFolder::make(parent);
  if (!folder) return folder.error();
  Listener listener(*std::move(folder), peer);
  if (auto listening = listener.listen(); !listening) return listening.error();
  return listener;
}

Result<void> Listener::listen() {
  const auto path = wire::LocalAddress::of(address());
  if (!path) return path.error();
  m_socket = wire::makeLocalSocket();
  if (!m_socket) return systemError(errno, "make a socket", address());
  const uid_t user = m_peer.user;
  const bool isReady =
      ::bind(m_socket.number(), path->get(), path->size()) == 0 && ::chmod(address().c_str(), ownerOnly) == 0 &&
      (user == ::geteuid() || ::chown(address().c_str(), user, static_cast<gid_t>(-1)) == 0) &&
      ::listen(m_socket.number(), 4) == 0 &&
      ::chmod(m_folder.path().c_str(), passable) == 0;  // last: nobody reaches a socket with other permissions
  if (!isReady) return systemError(errno, "make a socket", address());
  return {};
}

Result<FileDescriptor> Listener::accept(std::chrono::milliseconds limit, Console& console) {
  using SteadyClock = std::chrono::steady_clock;
  const auto end = SteadyClock::now() + limit;
  while (true) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - SteadyClock::now()).count();
    pollfd waiting{.fd = m_socket.number(), .events = POLLIN, .revents = 0};
    const int ready = left > 0 ? ::poll(&waiting, 1, static_cast<int>(left)) : 0;
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return Error{.code = Error::Code::Io, .message = "no connection was made in time"};
    FileDescriptor connection(::accept(m_socket.number(), nullptr, nullptr));
    if (!connection) continue;
    ::fcntl(connection.number(), F_SETFD, FD_CLOEXEC);
    if (m_peer.isPeerOf(connection.number())) {
      m_socket.reset();
      ::unlink(address().c_str());
      return connection;
    }
    console.log("refused: a connection by another process than the one that started the helper");
  }
}

Result<FileDescriptor> connectTo(const fs::path& address) {
  const auto path = wire::LocalAddress::of(address);
  if (!path) return path.error();
  FileDescriptor socket = wire::makeLocalSocket();
  if (!socket || ::connect(socket.number(), path->get(), path->size()) != 0) {
    return systemError(errno, "talk to the helper", address);
  }
  return socket;
}

}  // namespace mirvel
