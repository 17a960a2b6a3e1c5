#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/ports/HelperConnection.h"
#include "core/ports/Limit.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Program;

/// Has the host started that runs the user's jobs, and knows why it can't be. Where the system itself runs them there
/// is nothing to start, and that is a success. For the main thread.
class HostStart {
 public:
  /// A host that couldn't be started is tried again no sooner than this.
  static constexpr double secondsBetweenAttempts = 30;

  explicit HostStart(Program& program);

  /// From now on the host is started as soon as the catalogue has a job to run. A failure is tried again when the
  /// catalogue changes or the user comes back to the window.
  void begin();
  /// Why the host doesn't run; none: it does, or hasn't been needed.
  const std::optional<std::string>& failure() const { return m_failure; }
  /// Whether the job is enabled and doesn't run because the host doesn't.
  bool keepsFromRunning(const Job& job) const;

 private:
  static bool isRunByHost(const Job& job);
  void startIfNeeded();
  void start();
  void replied(const propertylist::Dictionary& body);
  void ended(std::optional<std::string> failure);

  Program& m_program;
  Limit m_limit;
  Delay m_delay;
  Subscription m_jobsUpdated, m_statusChanged;
  std::unique_ptr<HelperConnection> m_connection;  ///< while an answer is waited for; saves have one of their own
  std::optional<std::string> m_failure;
};

}  // namespace mirvel
