#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

/// A connection to a helper, and the requests that wait on it. Each of them is answered exactly once: when the
/// connection fails, or is closed, all that wait fail with it. For the main thread.
class HelperLink {
 public:
  using Reply = HelperConnection::Reply;
  /// Gives back whether the user knows of the failure now. `isTold`: they do already, by an earlier request's failure.
  using Failure = std::function<bool(const Error& why, bool isTold)>;

  explicit HelperLink(MainQueue& queue) : m_queue(queue), m_delay(queue) {}

  /// Null is no connection.
  void open(std::unique_ptr<HelperConnection> connection) { m_connection = std::move(connection); }
  bool isOpen() const { return m_connection != nullptr; }
  /// For whoever wants to end it. Null while there is none.
  HelperConnection* connection() const { return m_connection.get(); }

  /// Sends a request. Only while the link is open.
  void run(const propertylist::Dictionary& request, Reply reply, Failure failure);
  /// Ends the connection. What still waits fails, without the user being told.
  void close(const Error& why) { breakOff(why, true); }

 private:
  struct Waiting {
    Reply reply;
    Failure failure;
  };

  void breakOff(const Error& why, bool isTold);

  MainQueue& m_queue;
  Delay m_delay;
  std::shared_ptr<HelperConnection> m_connection;
  std::map<std::int64_t, Waiting> m_waiting;
  std::int64_t m_lastId = 0;
};

}  // namespace mirvel
