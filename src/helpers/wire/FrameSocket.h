#pragma once

#include <sys/socket.h>

#include <optional>

#include "core/process/FileDescriptor.h"
#include "helpers/wire/Frame.h"

namespace mirvel::wire {

/// The descriptor that a helper uses as its connection.
inline constexpr int helperDescriptor = 3;

/// The type of our sockets. They become close-on-exec as they are created, except on macOS, where that is a second
/// step.
#ifdef SOCK_CLOEXEC
inline constexpr int streamSocket = SOCK_STREAM | SOCK_CLOEXEC;
#else
inline constexpr int streamSocket = SOCK_STREAM;
#endif

/// Two connected stream sockets, close-on-exec. Both are empty, and `errno` is set, if they can't be created.
struct SocketPair {
  FileDescriptor ours;
  FileDescriptor theirs;

  static SocketPair make();
  explicit operator bool() const { return ours && theirs; }
};

/// Makes sending over a socket whose peer has gone fail with EPIPE instead of raising SIGPIPE.
void ignoreHangUps(int socket);

/// send(2) without SIGPIPE, restarted after EINTR.
ssize_t sendUninterrupted(int socket, std::string_view bytes);

/// Sends a frame over a blocking socket, and returns when the socket has accepted all of it. Returns `LimitExceeded`
/// for a frame that is too large, of which nothing is sent, and the system's error if sending fails.
Result<void> sendFrame(int socket, const Frame& frame);

/// Waits for the next frame on a blocking socket. Returns nullopt at the end of the stream, the errors of
/// `FrameReader::next`, `Malformed` if the stream ends within a frame, and the system's error if receiving fails.
Result<std::optional<Frame>> receiveFrame(int socket, FrameReader& reader);

}  // namespace mirvel::wire
