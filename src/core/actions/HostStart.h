#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/HelperLink.h"
#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Catalogue;
class Localize;
struct Notifications;
struct Platform;

/// Starts the host that runs the user's jobs, by a request to the action helper. Where launchd runs jobs there is
/// nothing to start, and the request succeeds. Main thread only.
class HostStart {
 public:
  /// The shortest time between two attempts to start the host.
  static constexpr double secondsBetweenAttempts = 30;

  static constexpr std::size_t mostKills = 3;
  static constexpr double killPeriod = 600;  ///< in seconds

  /// All must outlive this object.
  HostStart(const Platform& platform, const Localize& localize, const Catalogue& catalogue,
            Notifications& notifications);

  /// Starts to watch the catalogue: the host is started as soon as there is an enabled agent. After a failure it is
  /// tried again when the catalogue changes or the application becomes active. Changes of `failure` are posted as
  /// `Notifications::hostChanged`.
  void begin();
  /// Ends what `begin` has started, because the user has uninstalled the host. Requests that need it still start it.
  void pause();
  /// To be called when that has changed, or may have: whether the host doesn't run any more although nobody has ended
  /// it. Starts it again, if `begin` was called; not if that has happened `mostKills` times in `killPeriod`, which is a
  /// `failure`.
  void setHostKilled(bool wasKilled);
  /// The reason why the host couldn't be started. Nullopt if it is running, or hasn't been needed.
  const std::optional<std::string>& failure() const { return m_failure; }
  /// Whether the job is enabled but won't run, because the host couldn't be started.
  bool keepsFromRunning(const Job& job) const;

 private:
  static bool isRunByHost(const Job& job);
  bool isNeeded() const;
  void startIfNeeded();
  void startAgain();
  void start();
  void replied(const propertylist::Dictionary& body);
  void ended(std::optional<std::string> failure);

  const Platform& m_platform;
  const Localize& m_localize;
  const Catalogue& m_catalogue;
  Notifications& m_notifications;
  Limit m_limit;
  bool m_hasBegun = false;
  bool m_wasKilled = false;
  std::vector<double> m_kills;  ///< when the host was killed, in seconds since 1970; the latest ones
  Subscription m_jobsUpdated, m_statusChanged;
  HelperLink m_link;  ///< open only while waiting for a reply; saves use another one
  std::optional<std::string> m_failure;
};

}  // namespace mirvel
