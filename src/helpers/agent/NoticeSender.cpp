#include "helpers/agent/NoticeSender.h"

#include <algorithm>
#include <array>
#include <utility>

namespace mirvel::agent {

using Answer = Notifier::Answer;

void NoticeSender::plan() {
  const AgentMemory& memory = m_setup.memory;
  const bool hasUnsent = !memory.unsent.empty() || memory.omitted > 0;
  if (!hasUnsent || std::exchange(m_isPlanned, true)) return;
  m_delay(0, [this] {
    m_isPlanned = false;
    if (m_sending == 0 && !m_isStopped) send();
  });
}

void NoticeSender::send() {
  ++m_attempts;
  m_worst = Answer::Accepted;
  dropExcepted();
  const AgentMemory& memory = m_setup.memory;
  const auto notifications = notificationsFor(memory.unsent, memory.omitted, m_setup.localize);
  m_sending = notifications.size();
  if (m_sending == 0) m_setup.memory.write();
  for (const Notification& notification : notifications) {
    m_setup.notifier.send(notification,
                          m_delay.whileOwned([this, notification](Answer answer) { answered(notification, answer); }));
  }
}

/// The exceptions may have changed since a notice was made.
void NoticeSender::dropExcepted() {
  std::erase_if(m_setup.memory.unsent, [this](const Notice& notice) {
    if (notice.isChange()) return !m_setup.exceptions.tellsChanges(notice.name, notice.kind);
    return notice.isRun() && !m_setup.exceptions.tellsFailures(notice.name, notice.kind);
  });
}

void NoticeSender::answered(const Notification& notification, Answer answer) {
  AgentMemory& memory = m_setup.memory;
  --m_sending;
  m_worst = std::max(m_worst, answer);
  if (answer == Answer::Accepted) {
    for (const Notice& notice : notification.notices) {
      const auto found = std::find(memory.unsent.begin(), memory.unsent.end(), notice);
      if (found != memory.unsent.end()) memory.unsent.erase(found);
    }
    memory.omitted -= notification.omitted;
  }
  if (m_sending > 0) return;
  memory.write();
  if (m_worst == Answer::Refused) return planRetry();
  if (m_worst == Answer::Unavailable) return;
  m_refusals = 0;
  plan();  // what has been added meanwhile
}

void NoticeSender::planRetry() {
  constexpr std::array pauses{30.0, 120.0, 600.0};  // in seconds
  m_delay(pauses.at(std::min(m_refusals, pauses.size() - 1)), [this, attempt = m_attempts] {
    if (attempt == m_attempts) plan();
  });
  ++m_refusals;
}

}  // namespace mirvel::agent
