#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/HelperLink.h"
#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/files/HostMark.h"
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
  /// Doesn't start the host any more, because the user is uninstalling it. Requests that need it still start it, and
  /// when the runs tell that it is back, the pause is over.
  void pause() { m_isPaused = true; }
  /// Ends the pause, because the host wasn't uninstalled.
  void resume() { m_isPaused = false; }
  /// To be called when the state of the host has changed, or may have. If it was killed, starts it again, if `begin`
  /// was called; not if that has happened `mostKills` times in `killPeriod`, which is a `failure`.
  void setHost(HostMark::State host);
  /// The reason why the host couldn't be started. Nullopt if it is running, or hasn't been needed.
  const std::optional<std::string>& failure() const { return m_failure; }
  /// Whether the job is enabled but won't run, because the host couldn't be started.
  bool keepsFromRunning(const Job& job) const;

 private:
  static bool isRunByHost(const Job& job);
  bool isNeeded() const;
  bool mayStart() const { return m_hasBegun && !m_isPaused; }
  void hostWasKilled();
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
  bool m_isPaused = false;
  HostMark::State m_host = HostMark::State::None;
  std::vector<double> m_kills;  ///< when the host was killed, in seconds since 1970; the latest ones
  Subscription m_jobsUpdated, m_statusChanged;
  HelperLink m_link;  ///< open only while waiting for a reply; saves use another one
  std::optional<std::string> m_failure;
};

}  // namespace mirvel
