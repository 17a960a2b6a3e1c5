#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#include "core/ports/MainQueue.h"

namespace mirvel::testdata {

/// A main queue for tests with real threads. The test's thread runs the posted tasks until a condition holds. Delayed
/// tasks run at once, except for time limits of a minute or more, which never expire.
class ThreadQueue final : public MainQueue {
 public:
  void post(Task task) override {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
    m_changed.notify_all();
  }
  void postAfter(double seconds, Task task) override {
    if (seconds < 60) post(std::move(task));
  }
  void sleep(double) override {}

  /// Returns false if the condition doesn't hold within a limit that is generous on any machine.
  bool runUntil(const std::function<bool()>& isDone) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!isDone()) {
      if (std::chrono::steady_clock::now() > end) return false;
      runNext();
    }
    return true;
  }

 private:
  /// Waits only briefly for a task, because the condition may become true without one, for example by a file that
  /// another process writes.
  void runNext() {
    Task task;
    {
      std::unique_lock lock(m_mutex);
      const auto isThere = [this] { return !m_tasks.empty(); };
      if (!m_changed.wait_for(lock, std::chrono::milliseconds(10), isThere)) return;
      task = std::move(m_tasks.front());
      m_tasks.pop_front();
    }
    task();
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<Task> m_tasks;
};

}  // namespace mirvel::testdata
