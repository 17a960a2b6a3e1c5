#pragma once

#include <string>
#include <vector>

#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"
#include "core/session/Busy.h"
#include "core/session/SessionContext.h"

namespace mirvel {

class ActionController;
class HostStart;
class JobRuns;
struct HelperMessage;

/// Uninstalls the helpers that run jobs, after asking the user: ends the hosts of the user's jobs and of root's, with
/// the jobs that they run, and removes what they have installed. Job files and logs are kept. For the main thread.
class Uninstaller {
 public:
  enum class State {
    Idle,
    Waiting,  ///< until saves and deletions have ended
    Working,  ///< the request has been sent, or the user is being asked for a password
  };

  /// All must outlive this object. When it is destroyed while it waits, nothing is uninstalled.
  Uninstaller(const SessionContext& session, ActionController& actions, HostStart& hostStart, const JobRuns& runs,
              Busy& saving, Busy& deleting);

  State state() const { return m_state; }
  /// What is going on, or how the last attempt ended; empty at first.
  std::string status() const { return m_status; }
  /// Posted when state or status has changed.
  Signal<>& changed() { return m_changed; }

  /// Asks, naming the jobs that will stop, and uninstalls if the user agrees; Cancel is the default. Does nothing
  /// unless idle.
  void uninstall();
  /// Stops waiting for a save. Does nothing in other states.
  void cancel();
  /// The text of the question.
  std::string consequence() const;

 private:
  std::vector<std::string> stoppedJobs() const;
  std::vector<std::string> gaps() const;
  std::string knownToStop() const;
  void authorise();
  void waitUntilNothingIsSaved();
  void send();
  void ended(bool isDone);
  void show(State state, std::string status);

  const SessionContext m_session;
  ActionController& m_actions;
  HostStart& m_hostStart;
  const JobRuns& m_runs;
  Busy& m_saving;
  Busy& m_deleting;
  Delay m_delay;
  State m_state = State::Idle;
  bool m_isAsking = false;
  std::string m_status;
  std::string m_failure;  ///< what the helper answered
  Signal<> m_changed;
  Subscription m_saved, m_deleted;
  Busy::Token m_busy;
};

}  // namespace mirvel
