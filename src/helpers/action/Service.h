#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "core/messages/Replies.h"
#include "helpers/action/RequestHandler.h"
#include "helpers/action/Threads.h"
#include "helpers/wire/Outbox.h"

namespace mirvel {

/// Answers the requests that come over a socket.
///
/// Requests that change files or load and unload jobs run one at a time in the order in which they were sent, on one
/// thread. A test run and a query of the log touch none of these: each has a thread of its own, and holds up nobody. A
/// subscription has none. Each request is answered once, in whatever order they end, also one that is cancelled: with
/// `Cancelled` if it hadn't begun or could be stopped, else with its outcome.
///
/// What was received is carried out even if the peer has gone meanwhile, except for tests, which are stopped.
class Service {
 public:
  /// Test runs and queries at the same time; one more is answered with `LimitExceeded`.
  static constexpr std::size_t mostBeside = 16;
  /// Whether a request comes from somebody who may ask.
  using Admission = std::function<bool(const propertylist::Dictionary& request)>;

  /// The socket stays the caller's. Without `admits` everybody may ask.
  Service(int socket, RequestHandler& handler, Admission admits = {});
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  /// Serves until the peer hangs up, a request asks for the end, or the peer breaks the rules, which is the error. To
  /// be called once.
  Result<void> run();

 private:
  using Id = std::int64_t;
  enum class Course { InOrder, Beside, Subscription };
  /// A request that hasn't been answered.
  struct Flight {
    Course course = Course::InOrder;
    Cancellation cancellation;
    std::mutex mutex;  ///< of the two below: no event may follow the answer
    bool isAnswered = false;
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
  void subscribe(Id id, const Shared& flight, const messages::Subscribe& request);
  void publish(Id id, const std::weak_ptr<Flight>& weak, const propertylist::Dictionary& event);
  void cancel(Id id);
  void cancelBeside(const Shared& flight);
  void answer(Id id, const Shared& flight, const messages::Reply& reply);
  void forget(Id id);
  void workInOrder();
  std::optional<Queued> nextInOrder();
  void finish();

  int m_socket;
  RequestHandler& m_handler;
  Admission m_admits;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::map<Id, Shared> m_inFlight;
  std::deque<Queued> m_queue;  ///< of those that run in order
  std::size_t m_beside = 0;
  bool m_isEnding = false;  ///< no more requests come, or are to be carried out
  wire::Outbox m_outbox;
  Threads m_threads;
};

}  // namespace mirvel
