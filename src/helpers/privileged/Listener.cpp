#include "helpers/privileged/Listener.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "helpers/wire/LocalSocket.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr mode_t passable = 0711;
constexpr mode_t ownersAlone = 0600;

}  // namespace

Result<Listener> Listener::make(const fs::path& parent, uid_t user) {
  std::string name = parent / "mirvel-XXXXXX";
  if (!::mkdtemp(name.data())) return systemError(errno, "make a folder", name);
  Listener listener(name, user);
  if (auto listening = listener.listen(); !listening) return listening.error();
  return listener;
}

Result<void> Listener::listen() {
  const auto path = wire::LocalAddress::of(address());
  if (!path) return path.error();
  m_socket = wire::makeLocalSocket();
  if (!m_socket) return systemError(errno, "make a socket", address());
  const bool isReady = ::mkdir(privateFolder().c_str(), 0700) == 0 &&
                       ::bind(m_socket.number(), path->get(), path->size()) == 0 &&
                       ::chmod(address().c_str(), ownersAlone) == 0 &&
                       (m_user == ::geteuid() || ::chown(address().c_str(), m_user, static_cast<gid_t>(-1)) == 0) &&
                       ::listen(m_socket.number(), 4) == 0 &&
                       ::chmod(m_folder.c_str(), passable) == 0;  // only now can anybody come near
  if (!isReady) return systemError(errno, "make a socket", address());
  return {};
}

Listener::Listener(Listener&& other) noexcept
    : m_folder(std::exchange(other.m_folder, {})), m_user(other.m_user), m_socket(std::move(other.m_socket)) {}

Listener::~Listener() {
  if (m_folder.empty()) return;
  std::error_code failure;
  fs::remove_all(m_folder, failure);  // what can't be removed, the next start of the machine removes
}

Result<FileDescriptor> Listener::accept(std::chrono::milliseconds limit, Console& console) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + limit;
  while (true) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd waiting{.fd = m_socket.number(), .events = POLLIN, .revents = 0};
    const int ready = left > 0 ? ::poll(&waiting, 1, static_cast<int>(left)) : 0;
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) return Error{.code = Error::Code::Io, .message = "nobody connected in time"};
    FileDescriptor peer(::accept(m_socket.number(), nullptr, nullptr));
    if (!peer) continue;
    ::fcntl(peer.number(), F_SETFD, FD_CLOEXEC);
    if (wire::userOfPeer(peer.number()) == m_user) {
      m_socket.reset();
      ::unlink(address().c_str());
      return peer;
    }
    console.log("refused: a connection of another user");
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
