#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "core/base/ThreadWorkQueue.h"

namespace mirvel {

/// A work queue whose tasks run side by side, each in the order in which it was added, so that a task that waits
/// forever, for example for a network volume that doesn't answer, doesn't hold up the others. Threads are started when
/// they are needed.
///
/// The destructor drops the tasks that haven't started, but doesn't wait for those that run: they may outlive the
/// queue, and must own or share all that they use.
class ParallelWorkQueue final : public WorkQueue {
 public:
  /// For the name see `ThreadWorkQueue`. With `mostThreads` tasks that wait forever, no others run.
  ParallelWorkQueue(std::string name, std::size_t mostThreads);
  ~ParallelWorkQueue() override;

  void add(Task task) override;

 private:
  struct State;

  const std::string m_name;
  const std::size_t m_mostThreads;
  std::shared_ptr<State> m_state;
};

}  // namespace mirvel
