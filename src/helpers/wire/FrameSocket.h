#pragma once

#include <optional>

#include "core/process/FileDescriptor.h"
#include "helpers/wire/Frame.h"

namespace mirvel::wire {

/// The number of the descriptor over which a helper is spoken to.
inline constexpr int helperDescriptor = 3;

/// Two connected stream sockets, close-on-exec. Without ends: the process has too many descriptors, as `errno` says.
struct SocketPair {
  FileDescriptor ours;
  FileDescriptor theirs;

  static SocketPair make();
  explicit operator bool() const { return ours && theirs; }
};

/// Makes a socket of which the peer has gone give EPIPE instead of ending the process by a signal.
void ignoreHangUps(int socket);

/// send(2) without a signal, begun again when one interrupts it.
ssize_t sendUninterrupted(int socket, std::string_view bytes);

/// Sends a frame and waits until the socket has taken all of it. For a blocking socket.
Result<void> sendFrame(int socket, const Frame& frame);

/// Waits for the next frame; none at the end of the stream. A stream that ends within a frame is `Malformed`.
Result<std::optional<Frame>> receiveFrame(int socket, FrameReader& reader);

}  // namespace mirvel::wire
