#include "core/actions/HelperLink.h"

#include <utility>

namespace mirvel {

void HelperLink::run(const propertylist::Dictionary& request, Reply reply, Failure failure) {
  const std::int64_t id = ++m_lastId;
  m_waiting.emplace(id, Waiting{std::move(reply), std::move(failure)});
  m_connection->run(request, m_delay.whileOwned([this, id](const propertylist::Dictionary& answer) {
    if (const auto waiting = m_waiting.extract(id)) waiting.mapped().reply(answer);
  }),
                    m_delay.whileOwned([this, id](const Error& why) {
                      if (m_waiting.contains(id)) breakOff(why, false);
                    }));
}

void HelperLink::breakOff(const Error& why, bool isTold) {
  if (const auto connection = std::exchange(m_connection, nullptr)) {
    connection->invalidate();
    m_queue.post([connection] {});  // it may be this one that is telling of its end
  }
  const auto waiting = std::exchange(m_waiting, {});
  for (const auto& [id, request] : waiting) isTold = request.failure(why, isTold) || isTold;
}

}  // namespace mirvel
