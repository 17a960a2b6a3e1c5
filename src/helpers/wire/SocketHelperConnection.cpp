#include "helpers/wire/SocketHelperConnection.h"

#include <fcntl.h>
#include <poll.h>

#include <array>
#include <cerrno>
#include <map>
#include <optional>
#include <utility>

#include "core/files/RegularFile.h"
#include "helpers/wire/FrameSocket.h"

namespace mirvel::wire {

namespace {

Error hungUp() {
  return {.code = Error::Code::HungUp, .message = "the helper has ended"};
}

Error unexpectedFrame() {
  return {.code = Error::Code::Malformed, .message = "the helper answered a request that isn't pending"};
}

void makeNonBlocking(int descriptor) {
  ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

bool wouldBlock() {
  return errno == EAGAIN || errno == EWOULDBLOCK;
}

}  // namespace

/// The requests without an answer. For the main thread. A callback may destroy the connection.
class SocketHelperConnection::PendingRequests {
 public:
  /// Registers a request and returns its id.
  Id add(Reply reply, Failure failure, Event event) {
    m_pending.emplace(++m_lastId, Request{std::move(reply), std::move(failure), std::move(event)});
    return m_lastId;
  }
  /// Whether the request just added is one too many.
  bool isFull() const { return m_pending.size() > mostRequests; }
  /// Removes the callbacks of a request, whose answer is still expected. Returns false if it isn't pending.
  [[nodiscard]] bool cancel(Id id) {
    const auto found = m_pending.find(id);
    if (found == m_pending.end() || found->second.isCancelled) return false;
    found->second = {.reply = [](const auto&) {}, .failure = [](const auto&) {}, .event = {}, .isCancelled = true};
    return true;
  }
  /// Passes an answer or an event to its request. Returns false if no request expects it.
  [[nodiscard]] bool deliver(const Frame& frame) {
    switch (frame.kind) {
      case Frame::Kind::Message:
        return deliverAnswer(frame);
      case Frame::Kind::Event:
        return deliverEvent(frame);
      case Frame::Kind::Cancel:
        break;
    }
    return false;
  }
  void fail(Id id, const Error& why) {
    auto found = m_pending.extract(id);
    if (!found.empty()) found.mapped().failure(why);
  }
  /// Records why all later requests fail. Only the first reason is kept.
  void refuse(const Error& why) {
    if (!m_brokenBy) m_brokenBy = why;
  }
  void failAll(const Error& why) {
    refuse(why);
    while (!m_pending.empty()) fail(m_pending.begin()->first, why);
  }
  /// Removes all requests without calling anything.
  void forget() { m_pending.clear(); }
  const std::optional<Error>& brokenBy() const { return m_brokenBy; }

 private:
  struct Request {
    Reply reply;
    Failure failure;
    Event event;
    bool isCancelled = false;
  };

  bool deliverAnswer(const Frame& frame) {
    const auto found = m_pending.extract(frame.id);
    if (found) found.mapped().reply(frame.body);
    return !found.empty();
  }
  bool deliverEvent(const Frame& frame) {
    const auto found = m_pending.find(frame.id);
    if (found == m_pending.end()) return false;
    if (found->second.isCancelled) return true;
    const Event event = found->second.event;  // a copy, because the callback may cancel its request
    if (event) event(frame.body);
    return static_cast<bool>(event);
  }

  std::map<Id, Request> m_pending;
  Id m_lastId = 0;
  std::optional<Error> m_brokenBy;
};

SocketHelperConnection::SocketHelperConnection(FileDescriptor socket, MainQueue& queue, std::function<void()> ended)
    : m_queue(queue),
      m_ended(std::move(ended)),
      m_socket(std::move(socket)),
      m_requests(std::make_shared<PendingRequests>()),
      m_listeners(m_requests) {
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

bool SocketHelperConnection::hasFailed() const {
  return m_requests->brokenBy().has_value();
}

void SocketHelperConnection::invalidate() {
  m_requests->refuse(hungUp());
  breakOff(hungUp());
  close();
}

void SocketHelperConnection::close() {
  {
    const std::lock_guard lock(m_unsent.mutex);
    m_unsent.isClosed = true;
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
    postFailure(id,
                {.code = Error::Code::LimitExceeded, .message = "the helper has too many requests; try again later"});
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

/// Sends as much as possible at once, so that a request arrives even if the program ends immediately afterwards. If
/// this fails, the thread fails as well and reports it.
void SocketHelperConnection::send(const std::string& bytes) {
  {
    const std::lock_guard lock(m_unsent.mutex);
    m_unsent.bytes += bytes;
  }
  if (flush() != Sent::All) wake();
}

void SocketHelperConnection::work() {
  FrameReader reader;
  while (exchange(reader)) {
  }
  hangUp();
}

/// Waits for the socket or a wake-up, then receives and sends. Returns false at the end of the connection.
bool SocketHelperConnection::exchange(FrameReader& reader) {
  const short events = m_waitingEvents < mostEvents ? POLLIN : 0;
  std::array<pollfd, 2> waiting{pollfd{.fd = m_socket.number(), .events = events, .revents = 0},
                                pollfd{.fd = m_waking.read.number(), .events = POLLIN, .revents = 0}};
  {
    const std::lock_guard lock(m_unsent.mutex);
    if (m_unsent.isClosed) return false;
    if (!m_unsent.bytes.empty()) waiting[0].events |= POLLOUT;
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

/// Reads the available bytes and posts their frames. Returns false at the end of the stream or after an error.
bool SocketHelperConnection::receive(FrameReader& reader) {
  std::array<char, 65536> buffer;
  const ssize_t count = readUninterrupted(m_socket.number(), buffer.data(), buffer.size());
  if (count < 0 && wouldBlock()) return true;
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
    if (!requests) return;  // the connection has been destroyed
    if (isEvent && m_waitingEvents-- == mostEvents) wake();
    if (!requests->brokenBy() && !requests->deliver(frame)) requests->failAll(unexpectedFrame());
  });
}

/// Sends as many bytes as the socket accepts now.
SocketHelperConnection::Sent SocketHelperConnection::flush() {
  const std::lock_guard lock(m_unsent.mutex);
  while (m_unsent.sent < m_unsent.bytes.size()) {
    const ssize_t count = sendUninterrupted(m_socket.number(), std::string_view(m_unsent.bytes).substr(m_unsent.sent));
    if (count < 0) return wouldBlock() ? Sent::Part : Sent::Failed;
    m_unsent.sent += static_cast<std::size_t>(count);
  }
  m_unsent.bytes.clear();
  m_unsent.sent = 0;
  return Sent::All;
}

void SocketHelperConnection::wake() {
  if (!m_waking) return;
  [[maybe_unused]] const auto written = ::write(m_waking.write.number(), "", 1);  // a full pipe also wakes the thread
}

void SocketHelperConnection::hangUp() {
  {
    const std::lock_guard lock(m_unsent.mutex);
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
