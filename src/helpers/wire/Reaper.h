#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace mirvel::wire {

/// Collects children that nobody talks to any more, so that none stays behind as a zombie and nobody waits for them.
class Reaper {
 public:
  /// At its end it waits so long for the children that still run. What runs on then, is left to finish its work.
  explicit Reaper(std::chrono::milliseconds patience = std::chrono::seconds(2)) : m_patience(patience) {}
  ~Reaper();
  Reaper(const Reaper&) = delete;
  Reaper& operator=(const Reaper&) = delete;

  /// Takes a child over. From any thread.
  void adopt(pid_t child);
  std::size_t count();

 private:
  void work();
  void collect();

  std::chrono::milliseconds m_patience;
  std::mutex m_mutex;
  std::condition_variable m_changed;
  std::vector<pid_t> m_children;
  bool m_isEnding = false;
  std::thread m_thread;  // begins with the first child
};

}  // namespace mirvel::wire
