#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "core/messages/Replies.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/wire/Outbox.h"

namespace mirvel {

/// Starts threads that run one function each, and joins them. Not thread-safe.
class Threads {
 public:
  Threads() = default;
  /// Joins all threads that are left.
  ~Threads();
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;

  /// Also joins threads that have ended. Returns false if the system can't create another thread.
  [[nodiscard]] bool start(std::function<void()> work);
  /// Waits until all threads have ended.
  void join();

 private:
  struct Entry {
    std::atomic<bool> hasEnded = false;
    std::thread thread = {};
  };

  std::list<Entry> m_entries;  // a list, because each thread refers to its entry
};

/// Answers the requests that a peer sends over a socket.
///
/// Requests that change files or load and unload jobs run one at a time on one thread, in the order in which they were
/// sent. A test run and a log query depend on none of these: each runs on a thread of its own and delays no other
/// request. A subscription needs no thread.
///
/// Each request is answered exactly once, and answers are sent in the order in which the requests end. A cancelled
/// request is answered with `Cancelled` if it hadn't begun or could be stopped, otherwise with its outcome. No event
/// follows the answer to its request. A peer that reads too slowly loses its subscriptions, and events of tests.
///
/// Requests that have been received are carried out even if the peer has hung up, except for tests, which are stopped.
class Service {
 public:
  /// The limit of test runs and log queries that are running or whose answers haven't been sent. Another one is
  /// answered with `LimitExceeded`, so a peer can make the helper neither start threads nor collect answers without
  /// limit.
  static constexpr std::size_t mostBeside = 16;
  /// Returns whether a request may be carried out.
  using Admission = std::function<bool(const propertylist::Dictionary& request)>;

  /// The caller keeps ownership of the socket. Without `admits` every request is carried out. A request that isn't
  /// admitted is answered with `NotConnected`.
  Service(int socket, RequestHandler& handler, Admission admits = {});
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  /// Serves until the peer hangs up or sends `Quit`. May be called only once. Returns an error if sending fails or the
  /// peer breaks the rules: by malformed frames, events, an id that is in use, or more than `wire::mostRequests`
  /// requests in flight. Such a peer is disconnected at once, without the answers that are left.
  Result<void> run();

 private:
  using Id = std::int64_t;
  enum class Course { InOrder, Beside, Subscription };
  /// A request whose answer hasn't been sent.
  struct Flight {
    Course course = Course::InOrder;  ///< for the reading thread only
    Cancellation cancellation;
    std::mutex mutex;  ///< held while an event or the answer is queued, so that no event follows the answer
    bool isAnswered = false;
    /// Guarded by the service's mutex. Not released with the flight: the last owner of that may be an event.
    std::shared_ptr<void> subscription;
  };
  using Shared = std::shared_ptr<Flight>;
  struct Queued {
    Id id;
    Shared flight;
    messages::Request request;
  };

  Result<void> readAll();
  Result<void> take(const wire::Frame& frame);
  Result<void> takeRequest(const wire::Frame& frame);
  void begin(Id id, const Shared& flight, messages::Request request);
  void enqueue(Queued queued);
  void runBeside(Id id, const Shared& flight, messages::Request request);
  std::size_t countBeside();
  void subscribe(Id id, const Shared& flight, const messages::Subscribe& request);
  void publish(Id id, const std::weak_ptr<Flight>& weak, const propertylist::Dictionary& event);
  bool send(Id id, Flight& flight, const propertylist::Dictionary& event);
  void cancel(Id id);
  void cancelBeside(const Shared& flight);
  void answer(Id id, const Shared& flight, const messages::Reply& reply);
  void forget(Id id);
  void unsubscribe(Flight& flight);
  void workInOrder();
  std::optional<Queued> nextInOrder();
  bool isEnding();
  void finish();

  int m_socket;
  RequestHandler& m_handler;
  Admission m_admits;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::map<Id, Shared> m_inFlight;
  std::deque<Queued> m_queue;  ///< the requests that run in order and haven't begun
  bool m_isEnding = false;     ///< no more requests are accepted
  wire::Outbox m_outbox;
  Threads m_threads;
};

}  // namespace mirvel
