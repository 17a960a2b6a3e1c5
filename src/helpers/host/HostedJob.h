#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/messages/JobReport.h"
#include "helpers/host/HostTime.h"
#include "helpers/host/JobRules.h"

namespace mirvel::host {

/// How a process ended.
struct ProcessEnd {
  int code = 0;    ///< its exit status, if no signal ended it
  int signal = 0;  ///< 0: none

  bool isSuccess() const { return code == 0 && signal == 0; }
  /// Whether a signal ended it that the system sends for a fault of the program, such as SIGSEGV.
  bool isCrash() const;
  /// "exited with 3", "was ended by signal 9 (Killed)".
  std::string text() const;
};

/// The state of the machine on which the decisions of a job depend. The functions are called from `decide`, `wakeAt`
/// and those that plan calendar runs, and must be cheap.
struct Surroundings {
  std::function<bool(const std::string& path)> exists;
  std::function<bool(const std::string& folder)> holdsFiles;  ///< false if it doesn't exist
  std::function<bool(const std::string& label)> isLoaded;
  /// The first run of any of the rules later than the moment; none if there is none.
  std::function<std::optional<std::chrono::sys_seconds>(std::span<const CalendarRule>, std::chrono::sys_seconds)>
      firstRun;
  /// The newest runs of any of the rules later than the first moment and not later than the second: the oldest first,
  /// each time once, at most that many.
  std::function<std::vector<std::chrono::sys_seconds>(std::span<const CalendarRule>, std::chrono::sys_seconds,
                                                      std::chrono::sys_seconds, std::size_t)>
      lastRuns;
};

/// The state machine of a loaded job: it is notified of events and decides what to do next. It performs no actions and
/// reads no clock, so a test can run through its whole life in virtual time. For one thread.
///
///     job.load(now);
///     for (;;) switch (job.decide(now)) ...   until `Wait`; then sleep until `wakeAt` or the next event
class HostedJob {
 public:
  enum class Order {
    Wait,       ///< do nothing before `wakeAt`
    Start,      ///< start its process, then call `started` or `startFailed`
    Terminate,  ///< send SIGTERM to all processes of the run
    Kill,       ///< send SIGKILL to them
    Forget      ///< delete this object: the job is unloaded and none of its processes remain
  };

  /// `surroundings` must outlive the job.
  HostedJob(JobRules rules, const Surroundings& surroundings);

  /// Called once: the intervals begin, and `RunAtLoad` takes effect. If the job was loaded by an earlier host, which
  /// ended at `absentSince`, the calendar times since then count as missed.
  void load(const HostTime& now, std::optional<std::chrono::sys_seconds> absentSince = {});
  /// The job is never started again; its processes are stopped, and then `decide` returns `Forget`.
  void unload(const HostTime& now);
  /// Likewise, with at most `patience` between SIGTERM and SIGKILL. A repeated call can only shorten that time.
  void unload(const HostTime& now, std::chrono::milliseconds patience);
  /// It is started at once, whatever its throttle interval and `LaunchOnlyOnce` say, or as soon as the run that is
  /// being stopped is over. Without effect while it runs.
  void request();
  /// Its run is stopped, and a start that was requested is cancelled. The job stays loaded and may be started again for
  /// another cause.
  void stop(const HostTime& now);
  /// Likewise, and the job is started again when the run is over; at once if it doesn't run.
  void restart(const HostTime& now);
  /// Its process was started.
  void started(const HostTime& now);
  /// It couldn't be started for a temporary reason: `Start` is returned again after the throttle interval.
  void startFailed(const HostTime& now);
  /// Its process has ended, or could never be started. With `Left::Others` the run isn't over: the processes that it
  /// left behind are stopped, and the job isn't started again before `cleared`.
  enum class Left { Nothing, Others };
  void ended(const ProcessEnd& end, const HostTime& now, Left left = Left::Nothing);
  /// Processes of an earlier host's run still exist: they are stopped, and the job isn't started before `cleared`.
  void foundRunning(const HostTime& now);
  /// No processes of the run remain.
  void cleared();
  /// One of `WatchPaths` has changed. A change while the job runs starts it again afterwards.
  void watchedPathChanged() { demand(RunCause::WatchedPath); }
  /// A volume was mounted.
  void mounted();
  /// The wall clock was set by `change`. Less than an hour is a correction: the planned time is kept, so that a run
  /// between the old and the new time is neither skipped nor repeated. After a larger change, the next run is computed
  /// again, and nothing counts as missed.
  void clockChanged(const HostTime& now, std::chrono::milliseconds change);
  /// The time zone was changed: the next calendar run is computed again.
  void zoneChanged(const HostTime& now) { planCalendar(now); }

  /// What to do now. Called repeatedly until it returns `Wait`; every other order is returned once.
  Order decide(const HostTime& now);
  /// When to call `decide` again if there is no event before, on the running clock; none: only after an event.
  std::optional<std::chrono::milliseconds> wakeAt(const HostTime& now) const;

  const JobRules& rules() const { return m_rules; }
  /// Why `decide` has returned `Start` the last time.
  RunCause cause() const { return m_cause; }
  /// Whether a requested start is still to come.
  bool isRequested() const { return m_isRequested; }
  /// Whether its processes have been asked to end, because of `stop`, `unload` or the end of its first process.
  bool isStopping() const { return m_isRunning && m_isTerminated; }
  /// Whether all processes of its run are to be ended, also those in sessions of their own.
  bool isStopped() const { return m_isUnloaded || m_isStopped; }
  /// The scheduled times at which it didn't run since the last call, the oldest first.
  std::vector<MissedRun> takeMissed() { return std::exchange(m_missed, {}); }
  bool isRunning() const { return m_isRunning; }
  /// Its process has ended, and the processes that it left behind are being stopped: the owner checks at each `wakeAt`
  /// whether they are gone.
  bool isClearing() const { return m_isClearing; }
  bool isUnloaded() const { return m_isUnloaded; }
  /// `Kill` was returned for this run: remaining processes may be killed again.
  bool isKilled() const { return m_isKilled; }
  const std::optional<ProcessEnd>& lastEnd() const { return m_lastEnd; }
  /// The next start by `StartInterval` or `StartCalendarInterval`.
  std::optional<std::chrono::sys_seconds> nextRun(const HostTime& now) const;

 private:
  void demand(RunCause cause);
  void planCalendar(const HostTime& now);
  void takeDueTimes(const HostTime& now);
  void takeDueInterval(const HostTime& now);
  void takeDueCalendar(const HostTime& now);
  /// What happens when a scheduled time has come.
  void takeTime(std::chrono::sys_seconds time, RunCause cause);
  void miss(std::chrono::sys_seconds time, MissedRun::Why why);
  void beginToStop(const HostTime& now, std::chrono::milliseconds patience);
  Order decideToStop(const HostTime& now);
  /// Why the job is to be started now or after the throttle interval; none if it isn't.
  std::optional<RunCause> wantedBy() const;
  bool isKeptAlive() const;
  std::chrono::milliseconds earliestStart() const;

  JobRules m_rules;
  const Surroundings* m_surroundings;
  std::optional<std::chrono::milliseconds> m_nextInterval;  ///< running clock
  std::optional<std::chrono::sys_seconds> m_nextCalendar;
  std::optional<std::chrono::milliseconds> m_lastAttempt;  ///< to start it; running clock
  std::optional<std::chrono::milliseconds> m_killAt;
  std::optional<ProcessEnd> m_lastEnd;
  std::chrono::sys_seconds m_skippedAfter{}, m_skippedUntil{};  ///< by the last change of the clock; empty: set back
  std::vector<MissedRun> m_missed;
  std::optional<RunCause> m_demand;  ///< the first event that asks for one start
  RunCause m_cause = RunCause::Unknown;
  bool m_isRequested = false;
  bool m_hasStarted = false;
  bool m_isRunning = false;
  bool m_isClearing = false;
  bool m_isUnloaded = false;
  bool m_isStopped = false;     ///< `stop` was called for this run
  bool m_isTerminated = false;  ///< `Terminate` was returned for this run
  bool m_isKilled = false;
};

}  // namespace mirvel::host
