#include "core/actions/HostStart.h"

#include <algorithm>

#include "core/actions/ActionTexts.h"
#include "core/locale/Localize.h"
#include "core/messages/Replies.h"
#include "core/session/Catalogue.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"

namespace mirvel {

HostStart::HostStart(const Platform& platform, const Localize& localize, const Catalogue& catalogue,
                     Notifications& notifications)
    : m_platform(platform),
      m_localize(localize),
      m_catalogue(catalogue),
      m_notifications(notifications),
      m_limit(platform.mainQueue),
      m_delay(platform.mainQueue) {}

void HostStart::begin() {
  m_jobsUpdated = m_notifications.jobsUpdated.subscribe([this] { startIfNeeded(); });
  m_statusChanged = m_notifications.appStatusChanged.subscribe([this] { startIfNeeded(); });
}

/// Daemons have another host, which only root can start.
bool HostStart::isRunByHost(const Job& job) {
  return job.kind.isAgent() && !job.isDisabled();
}

bool HostStart::keepsFromRunning(const Job& job) const {
  return m_failure.has_value() && isRunByHost(job);
}

void HostStart::startIfNeeded() {
  const Jobs& jobs = m_catalogue.jobs();
  const bool hasJobs = std::any_of(jobs.begin(), jobs.end(), [](const auto& job) { return isRunByHost(*job); });
  if (m_connection || !hasJobs) return;
  // Both events can come in quick succession, and a failing start costs a process each time.
  m_limit.interval("HostStart", secondsBetweenAttempts, [this] { start(); });
}

void HostStart::start() {
  HelperConnections* const helpers = m_platform.helpers;
  if (m_connection || !helpers) return;
  m_connection = helpers->connectToAction();
  if (!m_connection) return ended(ActionTexts(m_localize).couldNotEstablishCommunicationWithHelperTool());
  m_connection->run(messages::Request{.content = messages::StartHost()}.write(),
                    m_delay.whileOwned([this](const propertylist::Dictionary& reply) { replied(reply); }),
                    m_delay.whileOwned([this](const Error& error) { ended(error.text()); }));
}

void HostStart::replied(const propertylist::Dictionary& body) {
  const auto reply = messages::readReply(messages::Kind::StartHost, body);
  if (reply && std::holds_alternative<messages::Done>(*reply)) return ended(std::nullopt);
  const auto* const error = reply ? std::get_if<HelperError>(&*reply) : nullptr;
  const std::string unknown = m_localize.anUnknownErrorOccurred();
  ended(error ? error->description.value_or(unknown) : unknown);
}

void HostStart::ended(std::optional<std::string> failure) {
  // Destroyed later: this may be called from one of the connection's callbacks.
  m_platform.mainQueue.post([old = std::shared_ptr<HelperConnection>(std::move(m_connection))] {});
  if (failure == m_failure) return;
  m_failure = std::move(failure);
  m_notifications.hostChanged.post();
}

}  // namespace mirvel
