#pragma once

#include <functional>
#include <memory>
#include <utility>

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

/// Puts closures off, for one owner: those still waiting when it goes are dropped. For the main thread.
class Delay {
 public:
  explicit Delay(MainQueue& queue) : m_queue(queue) {}

  /// The closure, for whoever else will run it on the main thread: it does nothing once the owner has gone.
  template <typename Closure>
  auto whileOwned(Closure closure) const {
    return [owner = std::weak_ptr(m_owner), closure = std::move(closure)](auto&&... arguments) {
      if (!owner.expired()) closure(std::forward<decltype(arguments)>(arguments)...);
    };
  }

  /// Runs the closure once on the main thread after so many seconds; 0 means the next pass of the run loop.
  void operator()(double seconds, MainQueue::Task closure) {
    m_queue.postAfter(seconds, whileOwned(std::move(closure)));
  }

 private:
  MainQueue& m_queue;
  std::shared_ptr<int> m_owner = std::make_shared<int>();
};

}  // namespace mirvel
