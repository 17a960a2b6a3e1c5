#pragma once

#include <functional>

namespace mirvel {

/// The main thread's run loop.
class MainQueue {
 public:
  using Task = std::function<void()>;

  MainQueue() = default;
  virtual ~MainQueue() = default;
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// Runs a task on the main thread, after those that were posted before it. From any thread.
  virtual void post(Task task) = 0;
  /// Runs it there after so many seconds; 0 means the next pass of the run loop. From any thread.
  virtual void postAfter(double seconds, Task task) = 0;
  /// Blocks the main thread. From there only.
  virtual void sleep(double seconds) = 0;
};

}  // namespace mirvel
