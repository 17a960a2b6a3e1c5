#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "core/ports/HelperConnection.h"
#include "helpers/wire/Frame.h"

namespace mirvel::wire {

/// The requests of one connection that wait for their answer. For the main thread. What is called back may end the
/// connection.
class Requests {
 public:
  /// Notes a request and gives its id.
  std::int64_t add(HelperConnection::Reply reply, HelperConnection::Failure failure);
  /// Hands an answer over; false if nobody waits for it. One that can't be an answer is the request's failure.
  [[nodiscard]] bool answer(const Frame& frame);
  void fail(std::int64_t id, const Error& why);
  /// Notes why no request can succeed from now on. Only the first reason counts.
  void refuse(const Error& why);
  /// Fails all that wait, and notes why no other can succeed. Only the first reason counts.
  void failAll(const Error& why);
  /// Forgets all that wait; nobody is told.
  void forget() { m_waiting.clear(); }
  const std::optional<Error>& brokenBy() const { return m_brokenBy; }

 private:
  struct Waiting {
    HelperConnection::Reply reply;
    HelperConnection::Failure failure;
  };

  std::map<std::int64_t, Waiting> m_waiting;
  std::int64_t m_lastId = 0;
  std::optional<Error> m_brokenBy;
};

}  // namespace mirvel::wire
