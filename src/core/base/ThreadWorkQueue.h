#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace mirvel {

/// Runs tasks off the main thread, and begins them in the order in which they were added. An interface, so that tests
/// can run tasks when they choose.
class WorkQueue {
 public:
  using Task = std::function<void()>;

  WorkQueue() = default;
  virtual ~WorkQueue() = default;
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;

  /// Thread-safe. Tasks must not throw. When the queue is destroyed, tasks that haven't started are dropped (their
  /// closures are destroyed), and a running one is waited for.
  virtual void add(Task task) = 0;
};

/// A work queue with its own thread, which runs one task after the other. Must not be destroyed by one of its tasks,
/// which would wait for itself.
class ThreadWorkQueue final : public WorkQueue {
 public:
  /// The name appears in debuggers and lists of threads; Linux uses the first 15 bytes.
  explicit ThreadWorkQueue(const std::string& name);
  ~ThreadWorkQueue() override;

  void add(Task task) override;

 private:
  void work();

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<Task> m_tasks;
  bool m_isEnding = false;
  std::thread m_thread;  // last: it uses the other members as soon as it starts
};

/// Names the calling thread for debuggers and lists of threads.
void nameThisThread(const std::string& name);

/// Prepares the heap of the calling thread for many allocations: reserves about 8 MiB at once, and makes the whole
/// program keep up to 64 MiB of freed memory per heap instead of returning it, so that a discarded catalogue makes room
/// for the next one. Call it once per thread. Does nothing without glibc, where the heap of every thread but the first
/// otherwise grows by a page at a time, each with a system call that blocks all threads that touch new memory.
void growHeapOfThisThread();

}  // namespace mirvel
