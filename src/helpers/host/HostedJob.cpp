#include "helpers/host/HostedJob.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

namespace mirvel::host {

using namespace std::chrono;

bool ProcessEnd::isCrash() const {
  constexpr std::array crashes = {SIGILL, SIGTRAP, SIGABRT, SIGFPE, SIGBUS, SIGSEGV, SIGSYS};
  return std::find(crashes.begin(), crashes.end(), signal) != crashes.end();
}

std::string ProcessEnd::text() const {
  if (signal == 0) return "exited with " + std::to_string(code);
  return "was ended by signal " + std::to_string(signal) + " (" + ::strsignal(signal) + ")";
}

HostedJob::HostedJob(JobRules rules, const Surroundings& surroundings)
    : m_rules(std::move(rules)), m_surroundings(&surroundings) {}

void HostedJob::load(const HostTime& now, std::optional<sys_seconds> absentSince) {
  if (m_rules.runAtLoad) demand(RunCause::Load);
  if (m_rules.interval) m_nextInterval = now.running + *m_rules.interval;
  planCalendar(now);
  if (!absentSince || m_rules.calendar.empty()) return;
  const auto times =
      m_surroundings->lastRuns(m_rules.calendar, *absentSince, floor<seconds>(now.wall), JobReport::mostMissed);
  for (const sys_seconds time : times) miss(time, MissedRun::Why::NoHost);
}

void HostedJob::unload(const HostTime& now) {
  unload(now, m_rules.exitTimeOut);
}

void HostedJob::unload(const HostTime& now, milliseconds patience) {
  if (m_isRunning) beginToStop(now, patience);
  m_isUnloaded = true;
  m_isRequested = false;
}

void HostedJob::request() {
  m_isRequested = !m_isUnloaded && (!m_isRunning || m_isStopped || m_isClearing);
}

void HostedJob::stop(const HostTime& now) {
  m_isRequested = false;
  if (!m_isRunning || m_isUnloaded) return;
  if (!m_isStopped) beginToStop(now, m_rules.exitTimeOut);
  m_isStopped = true;
}

void HostedJob::restart(const HostTime& now) {
  stop(now);
  request();
}

// SIGTERM is sent twice only if `unload` or `stop` comes while the leftovers of a run are stopped: it extends the stop
// from the group to all processes of the run (`Reach`).
void HostedJob::beginToStop(const HostTime& now, milliseconds patience) {
  if (!isStopped()) m_isTerminated = false;
  if (m_isKilled) return;
  const milliseconds killAt = now.running + std::min<milliseconds>(patience, m_rules.exitTimeOut);
  m_killAt = std::min(m_killAt.value_or(killAt), killAt);
}

void HostedJob::started(const HostTime& now) {
  m_isRunning = true;
  m_hasStarted = true;
  m_demand.reset();
  m_isRequested = false;
  m_lastAttempt = now.running;
}

void HostedJob::startFailed(const HostTime& now) {
  m_isRequested = false;
  m_lastAttempt = now.running;
}

void HostedJob::ended(const ProcessEnd& end, const HostTime& now, Left left) {
  m_lastEnd = end;
  if (left == Left::Nothing) return cleared();
  m_isClearing = true;
  if (!isStopped()) beginToStop(now, m_rules.exitTimeOut);
}

void HostedJob::foundRunning(const HostTime& now) {
  m_isRunning = true;
  m_isClearing = true;
  beginToStop(now, m_rules.exitTimeOut);
}

void HostedJob::cleared() {
  m_isRunning = false;
  m_isClearing = false;
  m_isStopped = false;
  m_isTerminated = false;
  m_isKilled = false;
  m_killAt.reset();
}

void HostedJob::mounted() {
  if (m_rules.startOnMount) demand(RunCause::Mount);
}

void HostedJob::clockChanged(const HostTime& now, milliseconds change) {
  constexpr milliseconds correction = 1h;
  const bool isCorrection = change < correction && change > -correction;
  if (!isCorrection || !m_nextCalendar) planCalendar(now);
  m_skippedAfter = floor<seconds>(now.wall - change);
  m_skippedUntil = floor<seconds>(now.wall);
}

HostedJob::Order HostedJob::decide(const HostTime& now) {
  if (m_isUnloaded && !m_isRunning) return Order::Forget;
  if (!m_isUnloaded) takeDueTimes(now);
  if (isStopped() || m_isClearing) return decideToStop(now);
  const auto cause = m_isRunning ? std::nullopt : wantedBy();
  if (!cause || (!m_isRequested && now.running < earliestStart())) return Order::Wait;
  m_cause = *cause;
  return Order::Start;
}

HostedJob::Order HostedJob::decideToStop(const HostTime& now) {
  if (!m_isTerminated) {
    m_isTerminated = true;
    return Order::Terminate;
  }
  if (!m_killAt || now.running < *m_killAt) return Order::Wait;
  m_killAt.reset();
  m_isKilled = true;
  return Order::Kill;
}

std::optional<milliseconds> HostedJob::wakeAt(const HostTime& now) const {
  std::optional<milliseconds> earliest;
  const auto add = [&](milliseconds time) { earliest = std::min(earliest.value_or(time), time); };
  if (isStopped() || m_isClearing) {
    // The system doesn't report the end of processes that aren't children, so they are polled.
    if (m_isClearing) add(now.running + (m_isKilled ? 250ms : 100ms));
    if (m_killAt) add(*m_killAt);
    return earliest;
  }
  if (m_nextInterval) add(*m_nextInterval);
  if (m_nextCalendar) add(now.running + (*m_nextCalendar - now.wall));
  if (!m_isRunning && wantedBy()) add(m_isRequested ? now.running : earliestStart());
  return earliest;
}

std::optional<sys_seconds> HostedJob::nextRun(const HostTime& now) const {
  if (m_rules.launchOnlyOnce && m_hasStarted) return std::nullopt;
  std::optional<sys_seconds> earliest = m_nextCalendar;
  if (m_nextInterval) {
    const auto run = round<seconds>(now.wall + (*m_nextInterval - now.running));
    earliest = std::min(earliest.value_or(run), run);
  }
  return earliest;
}

void HostedJob::planCalendar(const HostTime& now) {
  m_nextCalendar.reset();
  if (!m_rules.calendar.empty()) m_nextCalendar = m_surroundings->firstRun(m_rules.calendar, floor<seconds>(now.wall));
}

void HostedJob::demand(RunCause cause) {
  if (!m_demand) m_demand = cause;
}

void HostedJob::takeDueTimes(const HostTime& now) {
  if (m_nextInterval && *m_nextInterval <= now.running) takeDueInterval(now);
  if (m_nextCalendar && *m_nextCalendar <= now.wall) takeDueCalendar(now);
}

void HostedJob::takeDueInterval(const HostTime& now) {
  const milliseconds interval = *m_rules.interval;
  const milliseconds last = *m_nextInterval + (now.running - *m_nextInterval) / interval * interval;
  m_nextInterval = last + interval;
  takeTime(round<seconds>(now.wall - (now.running - last)), RunCause::Interval);
}

// However many times passed while the machine slept, they result in one run. Times that were skipped because the clock
// was set aren't missed.
void HostedJob::takeDueCalendar(const HostTime& now) {
  const sys_seconds first = *m_nextCalendar, end = floor<seconds>(now.wall);
  std::vector<sys_seconds> times = {first};
  const auto second = m_surroundings->firstRun(m_rules.calendar, first);
  if (second && *second <= end) {
    times = m_surroundings->lastRuns(m_rules.calendar, first - 1s, end, JobReport::mostMissed + 1);
  }
  planCalendar(now);
  if (times.empty()) times = {first};
  for (const sys_seconds time : std::span(times).first(times.size() - 1)) {
    const bool isSkipped = time > m_skippedAfter && time <= m_skippedUntil;
    if (!isSkipped) miss(time, MissedRun::Why::Asleep);
  }
  takeTime(times.back(), RunCause::Calendar);
}

// A time that comes while the job runs is dropped (launchd.plist(5), StartInterval), but not while only its leftovers
// are stopped.
void HostedJob::takeTime(sys_seconds time, RunCause cause) {
  if (m_isRunning && !m_isClearing) return miss(time, MissedRun::Why::StillRunning);
  demand(cause);
}

void HostedJob::miss(sys_seconds time, MissedRun::Why why) {
  if (m_rules.launchOnlyOnce && m_hasStarted) return;  // it wouldn't have run
  if (m_missed.size() == JobReport::mostMissed) m_missed.erase(m_missed.begin());
  m_missed.push_back({.time = static_cast<double>(time.time_since_epoch().count()), .why = why});
}

std::optional<RunCause> HostedJob::wantedBy() const {
  if (m_isRequested) return RunCause::Request;
  if (m_rules.launchOnlyOnce && m_hasStarted) return std::nullopt;
  if (m_demand) return m_demand;
  if (isKeptAlive()) return RunCause::KeepAlive;
  const auto& queues = m_rules.queueDirectories;
  const bool isQueued = std::any_of(queues.begin(), queues.end(), m_surroundings->holdsFiles);
  return isQueued ? std::optional(RunCause::QueueDirectory) : std::nullopt;
}

// The conditions are alternatives (launchd.plist(5), KeepAlive).
bool HostedJob::isKeptAlive() const {
  if (m_rules.keepAlive) return true;
  if (m_rules.onlyAfterInitialDemand && !m_hasStarted) return false;
  if (m_lastEnd && m_rules.afterSuccess && *m_rules.afterSuccess == m_lastEnd->isSuccess()) return true;
  if (m_lastEnd && m_rules.afterCrash && *m_rules.afterCrash == m_lastEnd->isCrash()) return true;
  const auto holds = [](const auto& conditions, const auto& isThere) {
    return std::any_of(conditions.begin(), conditions.end(), [&](const JobRules::Condition& condition) {
      return isThere(condition.subject) == condition.isWanted;
    });
  };
  return holds(m_rules.paths, m_surroundings->exists) || holds(m_rules.otherJobs, m_surroundings->isLoaded);
}

milliseconds HostedJob::earliestStart() const {
  return m_lastAttempt ? *m_lastAttempt + m_rules.throttle : milliseconds::min();
}

}  // namespace mirvel::host
