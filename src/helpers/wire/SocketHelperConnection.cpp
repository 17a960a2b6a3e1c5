#include "helpers/wire/SocketHelperConnection.h"

#include <fcntl.h>
#include <poll.h>

#include <array>
#include <cerrno>
#include <utility>

#include "core/files/RegularFile.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::wire {

namespace {

Error hungUp() {
  return {.code = Error::Code::HungUp, .message = "the helper has ended"};
}

Error spokeOutOfTurn() {
  return {.code = Error::Code::Malformed, .message = "the helper answered what it wasn't asked"};
}

void makeNonBlocking(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

bool wouldWait() {
  return errno == EAGAIN || errno == EWOULDBLOCK;
}

}  // namespace

SocketHelperConnection::SocketHelperConnection(FileDescriptor socket, MainQueue& queue, std::function<void()> ended)
    : m_queue(queue), m_ended(std::move(ended)), m_socket(std::move(socket)) {
  ignoreHangUps(m_socket.number());
  makeNonBlocking(m_socket.number());
  if (m_waking) {
    makeNonBlocking(m_waking.read.number());
    makeNonBlocking(m_waking.write.number());
    m_thread = std::thread([this] { work(); });
  } else {
    breakOff(systemError(errno, "talk to the helper", {}));
    hangUp();
  }
}

SocketHelperConnection::~SocketHelperConnection() {
  m_requests->forget();
  close();
}

void SocketHelperConnection::invalidate() {
  m_requests->refuse(hungUp());
  breakOff(hungUp());
  close();
}

void SocketHelperConnection::close() {
  {
    const std::lock_guard lock(m_outbox.mutex);
    m_outbox.isClosed = true;
  }
  wake();
  if (m_thread.joinable()) m_thread.join();
}

HelperConnection::Id SocketHelperConnection::run(const propertylist::Dictionary& request, Reply reply, Failure failure,
                                                 Event event) {
  const Id id = m_requests->add(std::move(reply), std::move(failure), std::move(event));
  if (m_requests->brokenBy()) {
    postFailure(id, *m_requests->brokenBy());
  } else if (m_requests->isFull()) {
    postFailure(id, {.code = Error::Code::LimitExceeded, .message = "the helper has too much to do; try again later"});
  } else if (const auto bytes = encode({.id = id, .body = request}, largestRequest)) {
    send(*bytes);
  } else {
    postFailure(id, bytes.error());
  }
  return id;
}

void SocketHelperConnection::cancel(Id request) {
  if (!m_requests->cancel(request) || m_requests->brokenBy()) return;
  if (const auto bytes = encode({.id = request, .kind = Frame::Kind::Cancel})) send(*bytes);
}

/// What fits is sent at once: a request that is followed by the program's end still arrives. The thread notices a
/// failure, too, and reports it.
void SocketHelperConnection::send(const std::string& bytes) {
  {
    const std::lock_guard lock(m_outbox.mutex);
    m_outbox.bytes += bytes;
  }
  if (flush() != Sent::All) wake();
}

void SocketHelperConnection::work() {
  FrameReader reader;
  while (exchange(reader)) {
  }
  hangUp();
}

/// One round of waiting and taking what came; false when there is no more to do.
bool SocketHelperConnection::exchange(FrameReader& reader) {
  const short events = m_waitingEvents < mostEvents ? POLLIN : 0;
  std::array<pollfd, 2> waiting{pollfd{.fd = m_socket.number(), .events = events, .revents = 0},
                                pollfd{.fd = m_waking.read.number(), .events = POLLIN, .revents = 0}};
  {
    const std::lock_guard lock(m_outbox.mutex);
    if (m_outbox.isClosed) return false;
    if (!m_outbox.bytes.empty()) waiting[0].events |= POLLOUT;
  }
  if (::poll(waiting.data(), waiting.size(), -1) < 0) return errno == EINTR;
  std::array<char, 64> signals;
  while (readUninterrupted(m_waking.read.number(), signals.data(), signals.size()) > 0) {
  }
  if ((waiting[0].revents & (POLLIN | POLLHUP | POLLERR)) != 0 && !receive(reader)) return false;
  if (flush() != Sent::Failed) return true;
  breakOff(hungUp());
  return false;
}

/// Reads the bytes that are there and posts the frames in them.
bool SocketHelperConnection::receive(FrameReader& reader) {
  std::array<char, 65536> buffer;
  const ssize_t count = readUninterrupted(m_socket.number(), buffer.data(), buffer.size());
  if (count < 0 && wouldWait()) return true;
  if (count > 0) {
    reader.append({buffer.data(), static_cast<std::size_t>(count)});
  } else {
    breakOff(hungUp());
    return false;
  }
  auto frame = reader.next();
  for (; frame && *frame; frame = reader.next()) post(*std::move(*frame));
  if (!frame) breakOff(frame.error());
  return static_cast<bool>(frame);
}

void SocketHelperConnection::post(Frame frame) {
  const bool isEvent = frame.kind == Frame::Kind::Event;
  if (isEvent) ++m_waitingEvents;
  m_queue.post([this, isEvent, listeners = m_listeners, frame = std::move(frame)] {
    const auto requests = listeners.lock();
    if (!requests) return;  // the connection is gone
    if (isEvent && m_waitingEvents-- == mostEvents) wake();
    if (!requests->brokenBy() && !requests->take(frame)) requests->failAll(spokeOutOfTurn());
  });
}

/// Sends what the socket takes now.
SocketHelperConnection::Sent SocketHelperConnection::flush() {
  const std::lock_guard lock(m_outbox.mutex);
  while (m_outbox.sent < m_outbox.bytes.size()) {
    const ssize_t count = sendUninterrupted(m_socket.number(), std::string_view(m_outbox.bytes).substr(m_outbox.sent));
    if (count < 0) return wouldWait() ? Sent::Part : Sent::Failed;
    m_outbox.sent += static_cast<std::size_t>(count);
  }
  m_outbox.bytes.clear();
  m_outbox.sent = 0;
  return Sent::All;
}

void SocketHelperConnection::wake() {
  if (!m_waking) return;
  [[maybe_unused]] const auto written = ::write(m_waking.write.number(), "", 1);  // a full pipe wakes as well
}

void SocketHelperConnection::hangUp() {
  {
    const std::lock_guard lock(m_outbox.mutex);
    m_socket.reset();
  }
  if (auto ended = std::exchange(m_ended, {})) ended();
}

void SocketHelperConnection::breakOff(Error why) {
  m_queue.post([listeners = m_listeners, why = std::move(why)] {
    if (const auto requests = listeners.lock()) requests->failAll(why);
  });
}

void SocketHelperConnection::postFailure(Id id, Error why) {
  m_queue.post([listeners = m_listeners, id, why = std::move(why)] {
    if (const auto requests = listeners.lock()) requests->fail(id, why);
  });
}

}  // namespace mirvel::wire
