#include "helpers/action/Service.h"

#include <sys/socket.h>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

#include "helpers/wire/FrameSocket.h"

namespace mirvel {

namespace {

Error brokenRule(const char* what) {
  return {.code = Error::Code::Malformed, .message = what};
}

messages::Reply refusal(Error::Code code, const char* why) {
  return HelperError::of(HelperFailure{.cause = {.code = code, .message = why}});
}

messages::Reply cancelled() {
  return refusal(Error::Code::Cancelled, "the request was cancelled");
}

}  // namespace

Threads::~Threads() {
  join();
}

bool Threads::start(std::function<void()> work) {
  m_entries.remove_if([](Entry& entry) {
    const bool hasEnded = entry.hasEnded;
    if (hasEnded) entry.thread.join();
    return hasEnded;
  });
  Entry& entry = m_entries.emplace_back();
  try {
    entry.thread = std::thread([&entry, work = std::move(work)] {
      work();
      entry.hasEnded = true;
    });
  } catch (const std::system_error&) {
    m_entries.pop_back();
    return false;
  }
  return true;
}

void Threads::join() {
  for (Entry& entry : m_entries) entry.thread.join();
  m_entries.clear();
}

Service::Service(int socket, RequestHandler& handler, Admission admits)
    : m_socket(socket),
      m_handler(handler),
      m_admits(std::move(admits)),
      m_outbox(socket, [this](Id id) { forget(id); }) {
  wire::ignoreHangUps(socket);
}

Result<void> Service::run() {
  std::thread inOrder([this] { workInOrder(); });
  auto received = readAll();
  if (isEnding()) received = {};  // a frame that `Quit` interrupted is no fault of the peer
  // Otherwise a peer that doesn't read either would block the outbox, and thereby this function, for ever.
  if (!received) ::shutdown(m_socket, SHUT_RDWR);
  finish();
  inOrder.join();
  m_threads.join();
  const auto sent = m_outbox.finish();
  return received ? sent : received;
}

Result<void> Service::readAll() {
  wire::FrameReader reader(wire::largestRequest);
  while (true) {
    const auto frame = wire::receiveFrame(m_socket, reader);
    if (!frame) return frame.error();
    if (!*frame) return {};
    if (auto taken = take(**frame); !taken) return taken;
  }
}

bool Service::isEnding() {
  const std::lock_guard lock(m_mutex);
  return m_isEnding;
}

/// The queued requests still run; tests are stopped, and subscriptions end.
void Service::finish() {
  std::vector<Shared> flights;
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    for (const auto& [id, flight] : m_inFlight) flights.push_back(flight);
  }
  m_changed.notify_all();
  for (const Shared& flight : flights) {
    if (flight->course == Course::Beside) cancelBeside(flight);
    if (flight->course != Course::Subscription) continue;
    {
      const std::lock_guard lock(flight->mutex);
      flight->isAnswered = true;
    }
    unsubscribe(*flight);
  }
}

Result<void> Service::take(const wire::Frame& frame) {
  switch (frame.kind) {
    case wire::Frame::Kind::Message:
      return takeRequest(frame);
    case wire::Frame::Kind::Cancel:
      cancel(frame.id);
      return {};
    case wire::Frame::Kind::Event:
      break;
  }
  return brokenRule("the peer sent an event");
}

Result<void> Service::takeRequest(const wire::Frame& frame) {
  const auto flight = std::make_shared<Flight>();
  {
    const std::lock_guard lock(m_mutex);
    if (m_isEnding) return {};
    if (m_inFlight.size() >= wire::mostRequests) return brokenRule("the peer sent too many requests");
    if (!m_inFlight.emplace(frame.id, flight).second) return brokenRule("the peer used an id twice");
  }
  if (m_admits && !m_admits(frame.body)) {
    answer(frame.id, flight, HelperError::of(ActionErrorCode::NotConnected));
  } else if (auto request = messages::Request::read(frame.body)) {
    begin(frame.id, flight, *std::move(request));
  } else {
    answer(frame.id, flight, HelperError::of(HelperFailure{.cause = request.error()}));
  }
  return {};
}

void Service::begin(Id id, const Shared& flight, messages::Request request) {
  if (const auto* const subscription = std::get_if<messages::Subscribe>(&request.content)) {
    flight->course = Course::Subscription;
    return subscribe(id, flight, *subscription);
  }
  const bool isBeside =
      std::holds_alternative<messages::Test>(request.content) || std::holds_alternative<messages::Log>(request.content);
  flight->course = isBeside ? Course::Beside : Course::InOrder;
  isBeside ? runBeside(id, flight, std::move(request)) : enqueue({id, flight, std::move(request)});
}

void Service::enqueue(Queued queued) {
  const std::lock_guard lock(m_mutex);
  m_queue.push_back(std::move(queued));
  m_changed.notify_all();
}

void Service::runBeside(Id id, const Shared& flight, messages::Request request) {
  const bool runs = countBeside() <= mostBeside && m_threads.start([this, id, flight, request = std::move(request)] {
    const auto reply = m_handler.answer(
        request, flight->cancellation, [&](const propertylist::Dictionary& event) { return send(id, *flight, event); });
    answer(id, flight, flight->cancellation.isCancelled() ? cancelled() : reply);
  });
  if (!runs) answer(id, flight, refusal(Error::Code::LimitExceeded, "too many tests and log queries at the same time"));
}

/// Includes the request that is about to begin.
std::size_t Service::countBeside() {
  const std::lock_guard lock(m_mutex);
  return static_cast<std::size_t>(std::count_if(
      m_inFlight.begin(), m_inFlight.end(), [](const auto& entry) { return entry.second->course == Course::Beside; }));
}

void Service::subscribe(Id id, const Shared& flight, const messages::Subscribe& request) {
  auto subscription = m_handler.subscribe(
      request,
      [this, id, weak = std::weak_ptr(flight)](const propertylist::Dictionary& event) { publish(id, weak, event); });
  if (!subscription) return answer(id, flight, refusal(Error::Code::BadArgument, "there is no such topic"));
  // Events may have ended it before it is stored. Then it is released here, after the lock.
  const std::lock_guard lock(m_mutex);
  if (m_inFlight.contains(id)) flight->subscription.swap(subscription);
}

/// A subscriber that is too slow loses its subscription instead of single events.
void Service::publish(Id id, const std::weak_ptr<Flight>& weak, const propertylist::Dictionary& event) {
  const auto flight = weak.lock();
  if (!flight || send(id, *flight, event)) return;
  answer(id, flight, refusal(Error::Code::LimitExceeded, "the subscriber is too slow for the events"));
}

/// Returns false if the peer is too slow. Events after the answer are dropped.
bool Service::send(Id id, Flight& flight, const propertylist::Dictionary& event) {
  const std::lock_guard lock(flight.mutex);
  return flight.isAnswered || m_outbox.addEvent({.id = id, .body = event, .kind = wire::Frame::Kind::Event});
}

/// A request that runs in order isn't interrupted once it has begun, so that nothing is left half done.
void Service::cancel(Id id) {
  Shared flight;
  bool wasQueued = false;
  {
    const std::lock_guard lock(m_mutex);
    const auto found = m_inFlight.find(id);
    if (found == m_inFlight.end()) return;  // its answer has been sent
    flight = found->second;
    wasQueued = std::erase_if(m_queue, [id](const Queued& queued) { return queued.id == id; }) > 0;
  }
  if (flight->course == Course::Beside) return cancelBeside(flight);
  if (wasQueued || flight->course == Course::Subscription) answer(id, flight, cancelled());
}

/// On a thread, because stopping a test can take as long as its `ExitTimeOut`.
void Service::cancelBeside(const Shared& flight) {
  if (flight->cancellation.isCancelled()) return;
  const bool isStarted = m_threads.start([flight] { flight->cancellation.cancel(); });
  if (!isStarted) flight->cancellation.cancel();
}

void Service::answer(Id id, const Shared& flight, const messages::Reply& reply) {
  const std::lock_guard lock(flight->mutex);
  if (std::exchange(flight->isAnswered, true)) return;
  m_outbox.addAnswer({.id = id, .body = messages::write(reply)});
}

void Service::forget(Id id) {
  std::map<Id, Shared>::node_type flight;
  {
    const std::lock_guard lock(m_mutex);
    flight = m_inFlight.extract(id);
  }
  if (flight) unsubscribe(*flight.mapped());
}

/// Releases the subscription after the lock, because that can wait for an event in progress.
void Service::unsubscribe(Flight& flight) {
  std::shared_ptr<void> subscription;
  const std::lock_guard lock(m_mutex);
  subscription.swap(flight.subscription);
}

void Service::workInOrder() {
  while (const auto queued = nextInOrder()) {
    answer(queued->id, queued->flight, m_handler.answer(queued->request, queued->flight->cancellation));
    if (!m_handler.isDone()) continue;
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    ::shutdown(m_socket, SHUT_RD);  // wakes the reading thread
    return;
  }
}

std::optional<Service::Queued> Service::nextInOrder() {
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_isEnding || !m_queue.empty(); });
  if (m_queue.empty()) return std::nullopt;
  Queued queued = std::move(m_queue.front());
  m_queue.pop_front();
  return queued;
}

}  // namespace mirvel
