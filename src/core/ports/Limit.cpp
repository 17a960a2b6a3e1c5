#include "core/ports/Limit.h"

#include <utility>

namespace mirvel {

void Limit::interval(const std::string& identifier, double duration, MainQueue::Task closure) {
  const auto running = m_waiting.find(identifier);
  if (running != m_waiting.end()) {
    running->second = std::move(closure);
    return;
  }
  m_waiting.emplace(identifier, MainQueue::Task());
  m_delay(duration, [this, identifier, duration] { endInterval(identifier, duration); });
  closure();
}

void Limit::endInterval(const std::string& identifier, double duration) {
  const MainQueue::Task waiting = std::move(m_waiting[identifier]);
  m_waiting.erase(identifier);
  if (waiting) interval(identifier, duration, waiting);
}

}  // namespace mirvel
