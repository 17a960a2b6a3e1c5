#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "core/base/Result.h"
#include "helpers/wire/Frame.h"

namespace mirvel::wire {

/// Sends frames over a blocking socket from a thread of its own, in the order in which they were added. After a failure
/// it sends nothing more and shuts the socket down, which ends the reader's wait. Thread-safe.
class Outbox {
 public:
  /// The caller keeps ownership of the socket. `sending` is called with the id of each answer just before it is sent,
  /// even after a failure, on the outbox's thread and without a lock.
  Outbox(int socket, std::function<void(std::int64_t id)> sending);
  ~Outbox();
  Outbox(const Outbox&) = delete;
  Outbox& operator=(const Outbox&) = delete;

  /// The caller limits the number of waiting answers, as `wire::mostRequests` does.
  void addAnswer(Frame frame);
  /// Returns false, and drops the event, if `mostEvents` events are waiting.
  [[nodiscard]] bool addEvent(Frame frame);
  /// Waits until everything has been sent, and returns an error if sending has failed. Nothing may be added afterwards.
  /// Blocks for as long as the peer doesn't read, unless the socket is shut down.
  Result<void> finish();

 private:
  void add(Frame frame);
  void work();
  std::optional<Frame> next();
  void send(const Frame& frame);

  int m_socket;
  std::function<void(std::int64_t)> m_sending;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<Frame> m_frames;
  std::size_t m_events = 0;  ///< the number of events in `m_frames`
  bool m_isFinishing = false;
  Result<void> m_result;
  std::thread m_thread;  // last, because it uses all other members
};

}  // namespace mirvel::wire
