#include "core/ports/MainQueue.h"

namespace mirvel {

void Limit::interval(const std::string& identifier, double duration, MainQueue::Task closure) {
  const auto running = m_pending.find(identifier);
  if (running != m_pending.end()) {
    running->second = std::move(closure);
    return;
  }
  m_pending.emplace(identifier, MainQueue::Task());
  m_delay(duration, [this, identifier, duration] { endInterval(identifier, duration); });
  closure();
}

void Limit::endInterval(const std::string& identifier, double duration) {
  const MainQueue::Task pending = std::move(m_pending[identifier]);
  m_pending.erase(identifier);
  if (pending) interval(identifier, duration, pending);  // begins the next interval, so that bursts stay limited
}

}  // namespace mirvel
