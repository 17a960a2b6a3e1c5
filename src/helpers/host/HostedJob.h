#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "helpers/host/JobRules.h"

namespace mirvel::host {

/// A moment by both clocks: the one that nobody sets and that counts on while the machine sleeps, and the one on the
/// wall.
struct HostTime {
  std::chrono::milliseconds running{0};
  std::chrono::sys_time<std::chrono::milliseconds> wall{};
};

/// How a process ended.
struct ProcessEnd {
  int code = 0;    ///< what it gave back, where no signal ended it
  int signal = 0;  ///< 0: none

  bool isSuccess() const { return code == 0 && signal == 0; }
  bool isCrash() const;
  /// "exited with 3", "was ended by signal 9 (Killed)".
  std::string text() const;
};

/// What a job asks about the world when it decides.
struct Surroundings {
  std::function<bool(const std::string& path)> exists;
  std::function<bool(const std::string& folder)> holdsFiles;
  std::function<bool(const std::string& label)> isLoaded;
  /// The first run of the rules after that moment.
  std::function<std::optional<std::chrono::sys_seconds>(std::span<const CalendarRule>, std::chrono::sys_seconds)>
      firstRun;
};

/// A loaded job: it is told what happens, and says what to do. It does nothing itself and knows no clock, so that its
/// whole life can be gone through in a test.
///
///     job.load(now);
///     for (;;) switch (job.decide(now)) ...   until it is `Wait`; then sleep until `wakeAt` or an event
class HostedJob {
 public:
  enum class Order {
    Wait,       ///< nothing to do before `wakeAt`
    Start,      ///< start its process, then call `started`
    Terminate,  ///< send SIGTERM to what there is of the run
    Kill,       ///< send SIGKILL to it
    Forget      ///< it is unloaded, and nothing of it runs any more
  };

  HostedJob(JobRules rules, const Surroundings& surroundings);

  void load(const HostTime& now);
  /// Its processes are stopped first, if it has any.
  void unload(const HostTime& now);
  /// The same for a host that ends, with so much time at most.
  void unload(const HostTime& now, std::chrono::milliseconds patience);
  void started(const HostTime& now);
  /// It couldn't be started for a reason that may pass: it is tried again as if it were wanted anew.
  void startFailed(const HostTime& now);
  /// Its process has ended; also when it couldn't be started at all. With `Left::Others` the run isn't over: what the
  /// process left running is stopped, until `cleared`.
  enum class Left { Nothing, Others };
  void ended(const ProcessEnd& end, const HostTime& now, Left left = Left::Nothing);
  /// Processes of an earlier host's run are still there: they are stopped before the job is started.
  void foundRunning(const HostTime& now);
  /// Nothing of the run is left.
  void cleared();
  /// One of `WatchPaths` has changed.
  void watchedPathChanged() { m_isDemanded = true; }
  void mounted();
  /// The clock on the wall was set by so much. If it is put right by less than an hour, a time between the old time and
  /// the new is neither lost nor comes twice; after that nothing was missed, and what is due is found anew.
  void clockChanged(const HostTime& now, std::chrono::milliseconds change);
  /// The time zone is another: what is due is found anew.
  void zoneChanged(const HostTime& now) { planCalendar(now); }

  /// The next thing to do now. Each order but `Wait` is given once.
  Order decide(const HostTime& now);
  /// When to ask again if nothing happens before, by the running clock.
  std::optional<std::chrono::milliseconds> wakeAt(const HostTime& now) const;

  const JobRules& rules() const { return m_rules; }
  bool isRunning() const { return m_isRunning; }
  /// Its process has ended, and what it left running is being stopped: look often whether it is gone.
  bool isClearing() const { return m_isClearing; }
  bool isUnloaded() const { return m_isUnloaded; }
  const std::optional<ProcessEnd>& lastEnd() const { return m_lastEnd; }
  /// When it is started next by a timer.
  std::optional<std::chrono::sys_seconds> nextRun(const HostTime& now) const;

  /// SIGKILL was ordered: whatever is there all the same may be killed again.
  bool isKilled() const { return m_isKilled; }

 private:
  void planCalendar(const HostTime& now);
  void takeDueTimes(const HostTime& now);
  void beginToStop(const HostTime& now, std::chrono::milliseconds patience);
  Order decideToStop(const HostTime& now);
  bool isWanted() const;
  bool isKeptAlive() const;
  std::chrono::milliseconds earliestStart() const;

  JobRules m_rules;
  const Surroundings* m_surroundings;
  std::optional<std::chrono::milliseconds> m_nextInterval;
  std::optional<std::chrono::sys_seconds> m_nextCalendar;
  std::optional<std::chrono::milliseconds> m_lastAttempt;  ///< to start it
  std::optional<std::chrono::milliseconds> m_killAt;
  std::optional<ProcessEnd> m_lastEnd;
  bool m_isDemanded = false;
  bool m_hasStarted = false;
  bool m_isRunning = false;
  bool m_isClearing = false;
  bool m_isUnloaded = false;
  bool m_isTerminated = false;
  bool m_isKilled = false;
};

}  // namespace mirvel::host
