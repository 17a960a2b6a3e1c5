#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <utility>

namespace mirvel {

/// The request to stop work whose result isn't needed any more. Thread-safe.
class Cancellation {
 public:
  /// Calls the action, if one is set, and returns when it has returned. Only the first call has an effect.
  void cancel() {
    const std::lock_guard lock(m_mutex);
    if (!m_isCancelled.exchange(true) && m_action) m_action();
  }
  bool isCancelled() const { return m_isCancelled; }
  /// Sets the action that stops the work; `cancel` calls it on its own thread. Returns false and sets nothing if the
  /// work has been cancelled already. An empty action removes the previous one, and waits for it if it is running.
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
