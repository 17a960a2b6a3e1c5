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
/// nothing more is sent, and the socket is shut down, so that a reader notices it. Thread-safe.
class Outbox {
 public:
  /// `sending` is called, on that thread and without a lock, with the id of each answer just before it is sent.
  Outbox(int socket, std::function<void(std::int64_t id)> sending);
  ~Outbox();
  Outbox(const Outbox&) = delete;
  Outbox& operator=(const Outbox&) = delete;

  void addAnswer(Frame frame);
  /// False if `mostEvents` events are waiting already; the frame is dropped then.
  [[nodiscard]] bool addEvent(Frame frame);
  /// Waits until everything has been sent, or sending has failed, which is the error. Nothing may be added afterwards.
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
  std::size_t m_events = 0;  ///< among the frames
  bool m_isFinishing = false;
  Result<void> m_result;
  std::thread m_thread;  // last, so that it starts when all else is there
};

}  // namespace mirvel::wire
