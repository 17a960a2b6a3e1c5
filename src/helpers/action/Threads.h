#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <thread>

namespace mirvel {

/// Threads that run one function each. For one thread.
class Threads {
 public:
  Threads() = default;
  /// Waits for all of them.
  ~Threads();
  Threads(const Threads&) = delete;
  Threads& operator=(const Threads&) = delete;

  /// False if the system has no room for another.
  [[nodiscard]] bool start(std::function<void()> work);
  void join();

 private:
  struct Entry {
    std::atomic<bool> hasEnded = false;
    std::thread thread = {};
  };

  std::list<Entry> m_entries;
};

}  // namespace mirvel
