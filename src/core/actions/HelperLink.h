#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

/// A connection to a helper, and the requests that wait on it. Each of them ends exactly once, with its reply or a
/// failure: when the connection fails, or is closed, all that wait fail with it. For the main thread.
class HelperLink {
 public:
  using Id = std::int64_t;
  using Reply = HelperConnection::Reply;
  using Event = HelperConnection::Event;
  /// Returns whether the user knows of the failure now. `isTold`: they do already, from an earlier request's failure,
  /// or because they cancelled this one.
  using Failure = std::function<bool(const Error& why, bool isTold)>;

  explicit HelperLink(MainQueue& queue) : m_queue(queue), m_delay(queue) {}

  /// Null is no connection.
  void open(std::unique_ptr<HelperConnection> connection) { m_connection = std::move(connection); }
  bool isOpen() const { return m_connection != nullptr; }

  /// Sends a request. Only while the link is open. `event` gets what the request subscribed to, until it ends.
  Id run(const propertylist::Dictionary& request, Reply reply, Failure failure, const Event& event = {});
  /// Ends the wait for one request, which fails with `Cancelled` before this returns. The connection and all other
  /// requests go on. Without effect on a request that has ended.
  void cancel(Id id);
  /// Closes the connection. What still waits fails, without the user being told.
  void close(const Error& why) { breakOff(why, true); }

 private:
  struct Waiting {
    Reply reply;
    Failure failure;
    HelperConnection::Id request = 0;
  };

  void requestFailed(Id id, const Error& why);
  void breakOff(const Error& why, bool isTold);

  MainQueue& m_queue;
  Delay m_delay;
  std::shared_ptr<HelperConnection> m_connection;
  std::map<Id, Waiting> m_waiting;
  Id m_lastId = 0;
};

}  // namespace mirvel
