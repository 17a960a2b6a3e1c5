#include "helpers/host/Connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

#include "helpers/wire/FrameSocket.h"

namespace mirvel::host {

short Connection::events() const {
  return m_unsent.empty() ? POLLIN : POLLOUT;
}

void Connection::receive() {
  if (!m_unsent.empty()) return;  // back pressure: the client has to read its replies first
  std::array<char, 65536> buffer;
  const ssize_t count = ::recv(descriptor(), buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  m_received += count > 0 ? static_cast<std::size_t>(count) : 0;
  m_isOver = count <= 0 || m_received > largestRequest;
  if (!m_isOver) m_reader.append({buffer.data(), static_cast<std::size_t>(count)});
}

std::optional<wire::Frame> Connection::next() {
  if (m_isOver || !m_unsent.empty()) return std::nullopt;
  auto frame = m_reader.next();
  if (!frame) {
    m_isOver = true;
    return std::nullopt;
  }
  if (*frame) m_received = 0;
  return *std::move(frame);
}

void Connection::send(const wire::Frame& frame) {
  const auto bytes = wire::encode(frame);
  if (!bytes || m_unsent.size() + bytes->size() > largestBacklog) {
    m_isOver = true;
    return;
  }
  m_unsent += *bytes;
  flush();
}

void Connection::flush() {
  while (!m_unsent.empty() && !m_isOver) {
    const ssize_t count = wire::sendUninterrupted(descriptor(), m_unsent);
    if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
    if (count < 0) m_isOver = true;
    if (count > 0) m_unsent.erase(0, static_cast<std::size_t>(count));
  }
}

}  // namespace mirvel::host
