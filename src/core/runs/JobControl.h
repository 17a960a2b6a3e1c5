#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "core/catalogue/Job.h"
#include "core/session/SessionContext.h"

namespace mirvel {

namespace jobfile {
class Plist;
}

class ActionController;
class Busy;
class JobRuns;
class Launchd;

/// The commands that start and stop a job.
enum class RunOrder : std::uint8_t { RunNow, Stop, Restart, Disable };
inline constexpr std::array<RunOrder, 4> allRunOrders{RunOrder::RunNow, RunOrder::Stop, RunOrder::Restart,
                                                      RunOrder::Disable};

/// Whether launchd would start the job again after it was stopped, so that only disabling it stops it for long.
bool startsAgain(const jobfile::Plist& record);

/// Starts and stops loaded jobs: agents by the helper that acts as the user, without a password, daemons by the other
/// one. Nothing that is shown changes by a reply, but by the report that the job's host makes. For the main thread.
class JobControl {
 public:
  /// All must outlive this object.
  JobControl(const SessionContext& session, const Busy& saving, ActionController& actions, const JobRuns& runs);

  /// Whether a menu offers the order for a job of this kind: Stop, or in its place Restart and Disable.
  static bool isOffered(RunOrder order, const Job& job);
  /// Why the order can't be given now, as a sentence; empty if it can be.
  std::string obstacle(RunOrder order, const Job& job) const;
  /// Gives an order for which there is no obstacle. If the job is to be started and has unsaved changes, the user
  /// decides whether to save them first. `Disable` saves the job as disabled, which unloads it; it becomes the selected
  /// one.
  void give(RunOrder order, const std::shared_ptr<Job>& job);

 private:
  std::string obstacleToRun(const Job& job) const;
  std::string obstacleToDisable(const Job& job) const;
  bool isEdited(const Job& job) const;
  void askAboutChanges(RunOrder order, const std::shared_ptr<Job>& job);
  void saveAndRun();
  void send(RunOrder order, const Job& job, const std::string& label);
  void disable(const std::shared_ptr<Job>& job);

  const SessionContext m_session;
  const Busy& m_saving;
  ActionController& m_actions;
  const JobRuns& m_runs;
};

}  // namespace mirvel
