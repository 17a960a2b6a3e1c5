#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace mirvel {

/// A queue beside the main thread that runs one task after the other.
class WorkQueue {
 public:
  using Task = std::function<void()>;

  WorkQueue() = default;
  virtual ~WorkQueue() = default;
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;

  /// From any thread. Tasks that haven't begun when the queue goes are dropped; one that runs is waited for.
  virtual void add(Task task) = 0;
};

/// A work queue with a thread of its own.
class ThreadWorkQueue final : public WorkQueue {
 public:
  /// The name shows in debuggers and in lists of threads.
  explicit ThreadWorkQueue(const std::string& name);
  ~ThreadWorkQueue() override;

  void add(Task task) override;

 private:
  void work();

  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::deque<Task> m_tasks;
  bool m_isEnding = false;
  std::thread m_thread;  // last, so that it starts when all else is there
};

}  // namespace mirvel
