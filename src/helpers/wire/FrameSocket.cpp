#include "helpers/wire/FrameSocket.h"

#include <fcntl.h>

#include <array>
#include <cerrno>

#include "core/files/RegularFile.h"

namespace mirvel::wire {

namespace {

#ifdef MSG_NOSIGNAL
constexpr int quietly = MSG_NOSIGNAL;
#else
constexpr int quietly = 0;  // macOS has an option of the socket instead, see `ignoreHangUps`
#endif

Error peerError(const char* doing) {
  return systemError(errno, doing, {});
}

}  // namespace

SocketPair SocketPair::make() {
  std::array<int, 2> ends{-1, -1};
  if (::socketpair(AF_UNIX, streamSocket, 0, ends.data()) != 0) return {};
  for (const int end : ends) {
    ::fcntl(end, F_SETFD, FD_CLOEXEC);
    ignoreHangUps(end);
  }
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

void ignoreHangUps(int socket) {
#ifdef SO_NOSIGPIPE
  const int on = 1;
  ::setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#else
  (void)socket;             // Linux has a flag for each call of send instead
#endif
}

ssize_t sendUninterrupted(int socket, std::string_view bytes) {
  ssize_t count = 0;
  do {
    count = ::send(socket, bytes.data(), bytes.size(), quietly);
  } while (count < 0 && errno == EINTR);
  return count;
}

Result<void> sendFrame(int socket, const Frame& frame) {
  const auto bytes = encode(frame);
  if (!bytes) return bytes.error();
  std::string_view rest = *bytes;
  while (!rest.empty()) {
    const ssize_t count = sendUninterrupted(socket, rest);
    if (count < 0) return peerError("send a message");
    rest.remove_prefix(static_cast<std::size_t>(count));
  }
  return {};
}

Result<std::optional<Frame>> receiveFrame(int socket, FrameReader& reader) {
  std::array<char, 65536> buffer;
  while (true) {
    auto frame = reader.next();
    if (!frame || *frame) return frame;
    const ssize_t count = readUninterrupted(socket, buffer.data(), buffer.size());
    if (count < 0) return peerError("receive a message");
    if (count > 0) {
      reader.append({buffer.data(), static_cast<std::size_t>(count)});
    } else if (reader.isWithinFrame()) {
      return Error{.code = Error::Code::Malformed, .message = "a message is incomplete"};
    } else {
      return std::optional<Frame>();
    }
  }
}

}  // namespace mirvel::wire
