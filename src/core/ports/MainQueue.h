#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace mirvel {

/// The run loop of the main thread. The shell implements it with the toolkit's event loop, tests with virtual time.
class MainQueue {
 public:
  using Task = std::function<void()>;

  MainQueue() = default;
  virtual ~MainQueue() = default;
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  /// Runs the task on the main thread, after the tasks that were posted before. Thread-safe.
  virtual void post(Task task) = 0;
  /// Runs the task on the main thread after the given number of seconds; with 0, in the next iteration of the run loop.
  /// Thread-safe.
  virtual void postAfter(double seconds, Task task) = 0;
  /// Blocks the main thread, without running any tasks. Only on the main thread.
  virtual void sleep(double seconds) = 0;
};

/// Delivers answers to the main thread until it is closed, for tasks that may outlive even the main queue. Thread-safe.
class Outbox {
 public:
  explicit Outbox(MainQueue& queue) : m_queue(&queue) {}

  void post(MainQueue::Task task) {
    const std::lock_guard lock(m_mutex);
    if (m_queue) m_queue->post(std::move(task));
  }
  /// To be called before the queue is destroyed. Later answers are dropped.
  void close() {
    const std::lock_guard lock(m_mutex);
    m_queue = nullptr;
  }

 private:
  std::mutex m_mutex;
  MainQueue* m_queue;
};

/// Delays closures that refer to the object that owns the `Delay`: once it is destroyed, pending closures are dropped.
/// For the main thread.
class Delay {
 public:
  /// The queue must outlive this object.
  explicit Delay(MainQueue& queue) : m_queue(queue) {}

  /// Wraps a closure that others run later, on the main thread, so that it does nothing once the owner is destroyed.
  template <typename Closure>
  auto whileOwned(Closure closure) const {
    return [owner = std::weak_ptr(m_owner), closure = std::move(closure)](auto&&... arguments) {
      if (!owner.expired()) closure(std::forward<decltype(arguments)>(arguments)...);
    };
  }

  /// Runs the closure on the main thread after the given number of seconds; see `MainQueue::postAfter`.
  void operator()(double seconds, MainQueue::Task closure) {
    m_queue.postAfter(seconds, whileOwned(std::move(closure)));
  }

 private:
  MainQueue& m_queue;
  std::shared_ptr<int> m_owner = std::make_shared<int>();
};

/// Limits how often something runs. For the main thread.
class Limit {
 public:
  /// The queue must outlive this object. Closures that are pending when the object is destroyed are dropped.
  explicit Limit(MainQueue& queue) : m_delay(queue) {}

  /// Runs the closure immediately, unless one with the same identifier ran less than `duration` seconds ago. Otherwise
  /// the closure runs when they have passed, unless a later call has replaced it: the last call of a burst always runs.
  void interval(const std::string& identifier, double duration, MainQueue::Task closure);

 private:
  void endInterval(const std::string& identifier, double duration);

  Delay m_delay;
  std::map<std::string, MainQueue::Task> m_pending;  ///< by running interval: what to run at its end, or nothing
};

}  // namespace mirvel
