#pragma once

#include <cstdint>
#include <string>

#include "core/process/FileDescriptor.h"
#include "helpers/wire/Frame.h"

namespace mirvel::host {

/// One client of the host. It never waits, and a client that misbehaves is only ever cut off itself.
class Connection {
 public:
  static constexpr std::size_t largestRequest = std::size_t{1} << 20U;   ///< bytes
  static constexpr std::size_t largestBacklog = std::size_t{32} << 20U;  ///< bytes of answers that nobody takes

  explicit Connection(FileDescriptor socket) : m_socket(std::move(socket)) {}

  int descriptor() const { return m_socket.number(); }
  /// The events of poll(2) to wait for: no more requests are read while answers aren't taken.
  short events() const;
  /// Takes a piece of what has come. Then all of `next` must be answered, as nothing tells of it again.
  void receive();
  /// The next whole request. None: no more for now, or `isOver`.
  std::optional<wire::Frame> next();
  void send(const wire::Frame& frame);
  /// Sends what the socket takes.
  void flush();
  /// The client has hung up, or has broken the rules.
  bool isOver() const { return m_isOver; }
  void cutOff() { m_isOver = true; }

 private:
  FileDescriptor m_socket;
  wire::FrameReader m_reader;
  std::size_t m_received = 0;  ///< bytes since the last whole request
  std::string m_unsent;
  bool m_isOver = false;
};

}  // namespace mirvel::host
