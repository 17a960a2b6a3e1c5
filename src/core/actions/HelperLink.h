#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

/// A connection to a helper, and the requests that are waiting for a reply. Each of them ends exactly once, with a
/// reply or a failure. When the connection fails or is closed, or the helper doesn't answer in time, all of them fail.
/// Main thread only.
class HelperLink {
 public:
  using Id = std::int64_t;
  using Reply = HelperConnection::Reply;
  using Event = HelperConnection::Event;
  /// Returns whether the user knows of the failure now. `isKnown` is true if they know already, because an earlier
  /// request failed for the same reason or they cancelled this one. So a lost connection is reported once.
  using Failure = std::function<bool(const Error& why, bool isKnown)>;

  /// The limit for most requests. The waits of a helper for a few requests in succession, such as for jobs that don't
  /// stop, are shorter in total.
  static constexpr double secondsToAnswer = 600;

  explicit HelperLink(MainQueue& queue) : m_queue(queue), m_delay(queue) {}

  /// Starts to use a connection. Null leaves the link closed. The link must not be open already.
  void open(std::unique_ptr<HelperConnection> connection) { m_connection = std::move(connection); }
  /// Whether requests can be sent. Becomes false when a request fails because of the connection.
  bool isOpen() const { return m_connection != nullptr; }
  /// Identifies the connection; null if the link isn't open.
  std::shared_ptr<const HelperConnection> connection() const { return m_connection; }

  /// Sends a request; the link must be open. Neither `reply` nor `failure` is called before this returns. If there is
  /// no reply within `limit` seconds, the connection fails: a helper that hangs won't answer other requests either.
  /// `event` is called for each event that the request has subscribed to, until the request ends.
  Id run(const propertylist::Dictionary& request, Reply reply, Failure failure,
         std::optional<double> limit = std::nullopt, const Event& event = {});
  /// Cancels one request, which fails with `Cancelled` before this returns. The connection and other requests are
  /// unaffected. Does nothing if the request has ended.
  void cancel(Id id);
  /// Closes the connection. The requests that are still waiting fail with `isKnown`.
  void close(const Error& why) { breakOff(why, true); }

 private:
  /// A request without a reply. `request` is its ID on the connection.
  struct Waiting {
    Reply reply;
    Failure failure;
    HelperConnection::Id request = 0;
  };

  void requestFailed(Id id, const Error& why);
  void breakOff(const Error& why, bool isKnown);

  MainQueue& m_queue;
  Delay m_delay;
  std::shared_ptr<HelperConnection> m_connection;
  std::map<Id, Waiting> m_waiting;
  std::map<Id, Waiting> m_failing;  ///< of a closed connection; each still waits for the call of `failure`
  Id m_lastId = 0;
};

}  // namespace mirvel
