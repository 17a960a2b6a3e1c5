#include "core/actions/HelperLink.h"

#include <utility>

namespace mirvel {

HelperLink::Id HelperLink::run(const propertylist::Dictionary& request, Reply reply, Failure failure,
                               const Event& event) {
  const Id id = ++m_lastId;  // unique across all connections that the link will have
  m_waiting.emplace(id, Waiting{std::move(reply), std::move(failure)});
  const auto answered = [this, id](const propertylist::Dictionary& answer) {
    // Extracted first: the reply may close the link, and then everything that is still waiting fails.
    if (const auto waiting = m_waiting.extract(id)) waiting.mapped().reply(answer);
  };
  const auto failed = [this, id](const Error& why) { requestFailed(id, why); };
  const auto happened = [this, id, event](const propertylist::Dictionary& news) {
    if (m_waiting.contains(id)) event(news);
  };
  const auto sent = m_connection->run(request, m_delay.whileOwned(answered), m_delay.whileOwned(failed),
                                      event ? Event(m_delay.whileOwned(happened)) : Event());
  if (const auto waiting = m_waiting.find(id); waiting != m_waiting.end()) waiting->second.request = sent;
  return id;
}

void HelperLink::cancel(Id id) {
  const auto waiting = m_waiting.extract(id);
  if (!waiting) return;
  m_connection->cancel(waiting.mapped().request);
  (void)waiting.mapped().failure({.code = Error::Code::Cancelled, .message = "the request was cancelled"}, true);
}

/// Only a failure of the connection affects the other requests.
void HelperLink::requestFailed(Id id, const Error& why) {
  if (!m_waiting.contains(id)) return;
  if (m_connection->hasFailed()) return breakOff(why, false);
  (void)m_waiting.extract(id).mapped().failure(why, false);
}

void HelperLink::breakOff(const Error& why, bool isKnown) {
  if (const auto connection = std::exchange(m_connection, nullptr)) {
    connection->invalidate();
    m_queue.post([connection] {});  // destroyed later: this may be called from one of its callbacks
  }
  const auto waiting = std::exchange(m_waiting, {});
  for (const auto& [id, request] : waiting) isKnown = request.failure(why, isKnown) || isKnown;
}

}  // namespace mirvel
