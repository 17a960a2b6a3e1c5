#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace mirvel::wire {

/// Waits for child processes in the background, so that none is left as a zombie and no other thread has to wait.
/// Thread-safe.
class Reaper {
 public:
  /// `patience` is how long the destructor waits for children that are still running. Those that don't end within that
  /// time are left running.
  explicit Reaper(std::chrono::milliseconds patience = std::chrono::seconds(2)) : m_patience(patience) {}
  ~Reaper();
  Reaper(const Reaper&) = delete;
  Reaper& operator=(const Reaper&) = delete;

  /// Takes over a child, for which no one else may wait any more.
  void adopt(pid_t child);

 private:
  void work();
  void collect();

  std::chrono::milliseconds m_patience;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::vector<pid_t> m_children;
  bool m_isEnding = false;
  std::thread m_thread;  ///< started with the first child
};

}  // namespace mirvel::wire
