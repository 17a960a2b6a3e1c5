#pragma once

#include <functional>

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

}  // namespace mirvel
