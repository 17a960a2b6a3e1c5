#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "core/ports/HelperConnection.h"
#include "helpers/wire/Frame.h"

namespace mirvel::wire {

/// The requests of one connection that wait for their answer. For the main thread. A callback may destroy the
/// connection.
class Requests {
 public:
  using Id = HelperConnection::Id;

  /// Registers a request and returns its id.
  Id add(HelperConnection::Reply reply, HelperConnection::Failure failure, HelperConnection::Event event);
  /// Whether no more requests may be sent for now.
  bool isFull() const { return m_waiting.size() > mostRequests; }
  /// Drops the callbacks of a request; its answer is still expected, and ignored. False if it doesn't wait.
  [[nodiscard]] bool cancel(Id id);
  /// Hands an answer or an event to its request; false if none waits for it.
  [[nodiscard]] bool take(const Frame& frame);
  void fail(Id id, const Error& why);
  /// Records why no request can succeed from now on. Only the first reason counts.
  void refuse(const Error& why);
  /// Fails all that wait, and records why no other can succeed. Only the first reason counts.
  void failAll(const Error& why);
  /// Drops all that wait without calling anything.
  void forget() { m_waiting.clear(); }
  const std::optional<Error>& brokenBy() const { return m_brokenBy; }

 private:
  struct Waiting {
    HelperConnection::Reply reply;
    HelperConnection::Failure failure;
    HelperConnection::Event event;
    bool isCancelled = false;
  };

  std::map<Id, Waiting> m_waiting;
  Id m_lastId = 0;
  std::optional<Error> m_brokenBy;
};

}  // namespace mirvel::wire
