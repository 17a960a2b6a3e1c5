#include "core/app/HostStart.h"

#include <algorithm>

#include "core/actions/Action.h"
#include "core/app/Program.h"

namespace mirvel {

HostStart::HostStart(Program& program)
    : m_program(program), m_limit(program.platform.mainQueue), m_delay(program.platform.mainQueue) {}

void HostStart::begin() {
  m_jobsUpdated = m_program.notifications.jobsUpdated.subscribe([this] { startIfNeeded(); });
  m_statusChanged = m_program.notifications.appStatusChanged.subscribe([this] { startIfNeeded(); });
}

/// Root's jobs have a host of their own, which only root can start.
bool HostStart::isRunByHost(const Job& job) {
  return job.kind.isAgent() && !job.isDisabled();
}

bool HostStart::keepsFromRunning(const Job& job) const {
  return m_failure.has_value() && isRunByHost(job);
}

void HostStart::startIfNeeded() {
  const Jobs& jobs = m_program.catalogue.jobs();
  const bool hasJobs = std::any_of(jobs.begin(), jobs.end(), [](const auto& job) { return isRunByHost(*job); });
  if (m_connection || !hasJobs) return;
  m_limit.interval("HostStart", secondsBetweenAttempts, [this] { start(); });
}

void HostStart::start() {
  HelperConnections* const helpers = m_program.platform.helpers;
  if (m_connection || !helpers) return;
  m_connection = helpers->connectToAction();
  if (!m_connection) return ended(m_program.foundation.localize.couldNotEstablishCommunicationWithHelperTool());
  m_connection->run(Action(Action::Kind::startHost).dictionary({}),
                    m_delay.whileOwned([this](const propertylist::Dictionary& reply) { replied(reply); }),
                    m_delay.whileOwned([this](const Error& error) { ended(error.text()); }));
}

void HostStart::replied(const propertylist::Dictionary& reply) {
  const propertylist::Value* const error = reply.find("error");
  if (!error) return ended(std::nullopt);
  const auto* const details = error->as<propertylist::Dictionary>();
  const auto* const text = details ? details->get<std::string>("description") : nullptr;
  ended(text ? *text : m_program.foundation.localize.anUnknownErrorOccurred());
}

void HostStart::ended(std::optional<std::string> failure) {
  // It may be this connection that is telling of its end.
  m_program.platform.mainQueue.post([old = std::shared_ptr<HelperConnection>(std::move(m_connection))] {});
  if (failure == m_failure) return;
  m_failure = std::move(failure);
  m_program.notifications.hostChanged.post();
}

}  // namespace mirvel
