#include "helpers/host/PollLoop.h"

namespace mirvel::host {

void PollLoop::watch(int descriptor, short events, Handler handler) {
  m_watches[descriptor] = {events, std::make_shared<Handler>(std::move(handler))};
}

void PollLoop::change(int descriptor, short events) {
  const auto found = m_watches.find(descriptor);
  if (found != m_watches.end()) found->second.events = events;
}

void PollLoop::forget(int descriptor) {
  m_watches.erase(descriptor);
}

void PollLoop::turn(int milliseconds) {
  m_waiting.clear();
  for (const auto& [descriptor, watch] : m_watches) m_waiting.push_back({descriptor, watch.events, 0});
  std::vector<std::weak_ptr<Handler>> handlers;  // in the order of `m_waiting`
  handlers.reserve(m_waiting.size());
  for (const auto& [descriptor, watch] : m_watches) handlers.push_back(watch.handler);
  if (::poll(m_waiting.data(), static_cast<nfds_t>(m_waiting.size()), milliseconds) <= 0) return;
  const auto happened = m_waiting;  // a handler may run a nested turn
  for (std::size_t i = 0; i < happened.size(); ++i) {
    if (happened[i].revents == 0) continue;
    // Null if an earlier handler has called `forget`; the number may already belong to another descriptor.
    if (const auto handler = handlers[i].lock()) (*handler)(happened[i].revents);
  }
}

}  // namespace mirvel::host
