#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>

#include "core/ports/MainQueue.h"

namespace mirvel::testdata {

/// A main run loop for tests with real threads: the test's own thread runs what they post, until it has what it waits
/// for. Tasks for later run at once.
class ThreadQueue final : public MainQueue {
 public:
  void post(Task task) override {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
    m_changed.notify_all();
  }
  void postAfter(double, Task task) override { post(std::move(task)); }
  void sleep(double) override {}

  /// False if it doesn't come within a time that no machine needs.
  bool runUntil(const std::function<bool()>& isDone) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!isDone()) {
      if (std::chrono::steady_clock::now() > end) return false;
      runNext();
    }
    return true;
  }

 private:
  /// Waits only a moment for a task: what is waited for may come without one, such as a file that a process writes.
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
