#pragma once

#include <string>

#include "core/process/FileDescriptor.h"
#include "helpers/wire/Frame.h"

namespace mirvel::host {

/// The host's end of a connection to a client. It never blocks. A client that breaks the rules (a malformed frame, a
/// request that is too long, replies that it doesn't read) loses its connection and affects nobody else. For one
/// thread.
class Connection {
 public:
  /// In bytes of a frame.
  static constexpr std::size_t largestRequest = std::size_t{1} << 20U;
  /// In bytes of replies that the client hasn't read.
  static constexpr std::size_t largestBacklog = std::size_t{32} << 20U;

  explicit Connection(FileDescriptor socket) : m_socket(std::move(socket)) {}

  int descriptor() const { return m_socket.number(); }
  /// The events of poll(2) to wait for: while replies are unsent, no requests are read, so that a client can't make the
  /// host buffer without limit.
  short events() const;
  /// Reads a piece of the input. The caller then has to call `next` until it returns none, since poll(2) doesn't report
  /// buffered frames.
  void receive();
  /// The next complete request; none if there is no other yet or the connection `isOver`.
  std::optional<wire::Frame> next();
  /// Sends a frame, or queues what the socket doesn't accept now.
  void send(const wire::Frame& frame);
  /// Sends as much of the queue as the socket accepts.
  void flush();
  /// The client has closed the connection or broken the rules: the owner destroys this object.
  bool isOver() const { return m_isOver; }
  void cutOff() { m_isOver = true; }

 private:
  FileDescriptor m_socket;
  wire::FrameReader m_reader;
  std::size_t m_received = 0;  ///< bytes since the last complete request
  std::string m_unsent;
  bool m_isOver = false;
};

}  // namespace mirvel::host
