#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <vector>

#include "core/ports/MainQueue.h"
#include "core/process/FileDescriptor.h"
#include "helpers/host/PollLoop.h"

namespace mirvel::agent {

/// The main queue of a program without a toolkit, over a poll loop. Waits without a time limit while nothing is
/// planned.
class PollQueue final : public MainQueue {
 public:
  /// The loop must outlive the queue.
  explicit PollQueue(host::PollLoop& loop);
  ~PollQueue() override;

  void post(Task task) override { postAfter(0, std::move(task)); }
  void postAfter(double seconds, Task task) override;
  void sleep(double seconds) override;

  /// Runs the tasks that are due. Only on the main thread, between the turns of the loop.
  void runDue();
  /// How long the loop may wait for the next task, in milliseconds; -1: without limit.
  int timeout() const;

 private:
  using Time = std::chrono::steady_clock::time_point;

  host::PollLoop& m_loop;
  Pipe m_waking = Pipe::make();  ///< wakes the loop when another thread has posted something
  mutable std::mutex m_mutex;    ///< guards the tasks
  std::multimap<Time, Task> m_tasks;
};

}  // namespace mirvel::agent
