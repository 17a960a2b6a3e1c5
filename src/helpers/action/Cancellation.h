#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <utility>

namespace mirvel {

/// Tells the thread that works on a request that nobody waits for its outcome any more. Thread-safe.
class Cancellation {
 public:
  /// Calls the action that is set, and returns when that has returned.
  void cancel() {
    const std::lock_guard lock(m_mutex);
    if (!m_isCancelled.exchange(true) && m_action) m_action();
  }
  bool isCancelled() const { return m_isCancelled; }
  /// Sets what ends the work early; it is called on the thread of `cancel`. False, and nothing is set, if it is too
  /// late. An empty one takes it back, and waits until one that is being called has returned.
  bool setAction(std::function<void()> action) {
    const std::lock_guard lock(m_mutex);
    if (!m_isCancelled) m_action = std::move(action);
    return !m_isCancelled;
  }

 private:
  std::mutex m_mutex;
  std::function<void()> m_action;
  std::atomic<bool> m_isCancelled = false;
};

}  // namespace mirvel
