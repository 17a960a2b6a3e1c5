#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Catalogue;
class Localize;
struct Notifications;
struct Platform;

/// Starts the host that runs the user's jobs, and knows why it can't be started. Where the system itself runs them
/// there is nothing to start, which counts as success. For the main thread.
class HostStart {
 public:
  /// The shortest time between two attempts to start the host.
  static constexpr double secondsBetweenAttempts = 30;

  /// All outlive it.
  HostStart(const Platform& platform, const Localize& localize, const Catalogue& catalogue,
            Notifications& notifications);

  /// From now on the host is started as soon as the catalogue has a job to run. A failure is tried again when the
  /// catalogue changes or the user comes back to the window.
  void begin();
  /// Why the host couldn't be started. None if it runs or wasn't needed.
  const std::optional<std::string>& failure() const { return m_failure; }
  /// Whether the job is enabled and doesn't run because the host doesn't.
  bool keepsFromRunning(const Job& job) const;

 private:
  static bool isRunByHost(const Job& job);
  void startIfNeeded();
  void start();
  void replied(const propertylist::Dictionary& body);
  void ended(std::optional<std::string> failure);

  const Platform& m_platform;
  const Localize& m_localize;
  const Catalogue& m_catalogue;
  Notifications& m_notifications;
  Limit m_limit;
  Delay m_delay;
  Subscription m_jobsUpdated, m_statusChanged;
  std::unique_ptr<HelperConnection> m_connection;  ///< while an answer is waited for; saves have one of their own
  std::optional<std::string> m_failure;
};

}  // namespace mirvel
