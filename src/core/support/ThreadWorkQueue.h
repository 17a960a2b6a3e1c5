#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "core/support/WorkQueue.h"

namespace mirvel {

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
