#pragma once

#include <map>
#include <string>

#include "core/ports/MainQueue.h"

namespace mirvel {

/// Thins out what comes in bursts. For the main thread.
class Limit {
 public:
  explicit Limit(MainQueue& queue) : m_delay(queue) {}

  /// Runs the closure now, unless one with this identifier ran less than `duration` seconds ago. Then the last closure
  /// of the burst runs when they are over, so that nothing is lost.
  void interval(const std::string& identifier, double duration, MainQueue::Task closure);

 private:
  void endInterval(const std::string& identifier, double duration);

  Delay m_delay;
  std::map<std::string, MainQueue::Task> m_waiting;  // of each running interval: what is to run at its end, or nothing
};

}  // namespace mirvel
