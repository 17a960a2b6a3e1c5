#include "core/actions/HostStart.h"

#include <algorithm>
#include <utility>

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
      m_link(platform.mainQueue) {}

void HostStart::begin() {
  m_jobsUpdated = m_notifications.jobsUpdated.subscribe([this] { startIfNeeded(); });
  m_statusChanged = m_notifications.appStatusChanged.subscribe([this] { startIfNeeded(); });
  m_hasBegun = true;
}

void HostStart::setHost(HostMark::State host) {
  if (std::exchange(m_host, host) == host) return;
  if (host == HostMark::State::Held) resume();
  if (host == HostMark::State::Left && mayStart()) hostWasKilled();
}

void HostStart::hostWasKilled() {
  const double now = m_platform.clock.secondsSince1970();
  std::erase_if(m_kills, [&](double time) { return time > now || now - time > killPeriod; });
  m_kills.push_back(now);
  if (m_kills.size() > mostKills) return ended(ActionTexts(m_localize).jobHostKeepsEnding());
  if (isNeeded()) startAgain();
}

/// By then, somebody else may have started it.
void HostStart::startAgain() {
  m_limit.interval("again", secondsBetweenAttempts, [this] {
    if (m_host == HostMark::State::Left && mayStart()) start();
  });
}

/// Daemons have another host, which only root can start.
bool HostStart::isRunByHost(const Job& job) {
  return job.kind.isAgent() && !job.isDisabled();
}

bool HostStart::keepsFromRunning(const Job& job) const {
  return m_failure.has_value() && isRunByHost(job);
}

bool HostStart::isNeeded() const {
  const Jobs& jobs = m_catalogue.jobs();
  return std::any_of(jobs.begin(), jobs.end(), [](const auto& job) { return isRunByHost(*job); });
}

void HostStart::startIfNeeded() {
  if (m_link.isOpen() || !mayStart() || !isNeeded()) return;
  // Both events can come in quick succession, and a failing start costs a process each time.
  m_limit.interval("HostStart", secondsBetweenAttempts, [this] {
    if (mayStart()) start();
  });
}

void HostStart::start() {
  HelperConnections* const helpers = m_platform.helpers;
  if (m_link.isOpen() || !helpers) return;
  m_link.open(helpers->connectToAction());
  if (!m_link.isOpen()) return ended(ActionTexts(m_localize).couldNotEstablishCommunicationWithHelperTool());
  (void)m_link.run(
      messages::Request{.content = messages::StartHost()}.write(),
      [this](const propertylist::Dictionary& reply) { replied(reply); },
      [this](const Error& error, bool) {
        ended(error.text());
        return true;
      },
      HelperLink::secondsToAnswer);
}

void HostStart::replied(const propertylist::Dictionary& body) {
  const auto reply = messages::readReply(messages::Kind::StartHost, body);
  if (reply && std::holds_alternative<messages::Done>(*reply)) return ended(std::nullopt);
  const auto* const error = reply ? std::get_if<HelperError>(&*reply) : nullptr;
  const std::string unknown = m_localize.anUnknownErrorOccurred();
  ended(error ? error->description.value_or(unknown) : unknown);
}

void HostStart::ended(std::optional<std::string> failure) {
  m_link.close({.code = Error::Code::Cancelled, .message = "the connection isn't needed any more"});
  if (failure == m_failure) return;
  m_failure = std::move(failure);
  m_notifications.hostChanged.post();
}

}  // namespace mirvel
