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

void HostedJob::load(const HostTime& now) {
  m_isDemanded = m_rules.runAtLoad;
  if (m_rules.interval) m_nextInterval = now.running + *m_rules.interval;
  planCalendar(now);
}

void HostedJob::unload(const HostTime& now) {
  unload(now, m_rules.exitTimeOut);
}

void HostedJob::unload(const HostTime& now, milliseconds patience) {
  if (m_isRunning) beginToStop(now, patience);
  m_isUnloaded = true;
}

// SIGTERM is sent twice only if `unload` comes while the leftovers of a run are stopped: it extends the stop from the
// group to all processes of the run (`Reach`).
void HostedJob::beginToStop(const HostTime& now, milliseconds patience) {
  if (!m_isUnloaded) m_isTerminated = false;
  if (m_isKilled) return;
  const milliseconds killAt = now.running + std::min<milliseconds>(patience, m_rules.exitTimeOut);
  m_killAt = std::min(m_killAt.value_or(killAt), killAt);
}

void HostedJob::started(const HostTime& now) {
  m_isRunning = true;
  m_hasStarted = true;
  m_isDemanded = false;
  m_lastAttempt = now.running;
}

void HostedJob::startFailed(const HostTime& now) {
  m_lastAttempt = now.running;
}

void HostedJob::ended(const ProcessEnd& end, const HostTime& now, Left left) {
  m_lastEnd = end;
  if (left == Left::Nothing) return cleared();
  m_isClearing = true;
  if (!m_isUnloaded) beginToStop(now, m_rules.exitTimeOut);
}

void HostedJob::foundRunning(const HostTime& now) {
  m_isRunning = true;
  m_isClearing = true;
  beginToStop(now, m_rules.exitTimeOut);
}

void HostedJob::cleared() {
  m_isRunning = false;
  m_isClearing = false;
  m_isTerminated = false;
  m_isKilled = false;
  m_killAt.reset();
}

void HostedJob::mounted() {
  if (m_rules.startOnMount) m_isDemanded = true;
}

void HostedJob::clockChanged(const HostTime& now, milliseconds change) {
  constexpr milliseconds correction = 1h;
  const bool isCorrection = change < correction && change > -correction;
  if (!isCorrection || !m_nextCalendar) planCalendar(now);
}

HostedJob::Order HostedJob::decide(const HostTime& now) {
  if (m_isUnloaded && !m_isRunning) return Order::Forget;
  if (!m_isUnloaded) takeDueTimes(now);
  if (m_isUnloaded || m_isClearing) return decideToStop(now);
  if (m_isRunning || !isWanted() || now.running < earliestStart()) return Order::Wait;
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
  if (m_isUnloaded || m_isClearing) {
    // The system doesn't report the end of processes that aren't children, so they are polled.
    if (m_isClearing) add(now.running + (m_isKilled ? 250ms : 100ms));
    if (m_killAt) add(*m_killAt);
    return earliest;
  }
  if (m_nextInterval) add(*m_nextInterval);
  if (m_nextCalendar) add(now.running + (*m_nextCalendar - now.wall));
  if (!m_isRunning && isWanted()) add(earliestStart());
  return earliest;
}

std::optional<sys_seconds> HostedJob::nextRun(const HostTime& now) const {
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

// However many times passed while the machine slept, they result in one run. A time that comes while the job runs is
// dropped (launchd.plist(5), StartInterval), but not while only its leftovers are stopped.
void HostedJob::takeDueTimes(const HostTime& now) {
  bool isDue = false;
  if (m_nextInterval && *m_nextInterval <= now.running) {
    isDue = true;
    const milliseconds interval = *m_rules.interval;
    *m_nextInterval += ((now.running - *m_nextInterval) / interval + 1) * interval;
  }
  if (m_nextCalendar && *m_nextCalendar <= now.wall) {
    isDue = true;
    planCalendar(now);
  }
  if (isDue && (!m_isRunning || m_isClearing)) m_isDemanded = true;
}

bool HostedJob::isWanted() const {
  if (m_rules.launchOnlyOnce && m_hasStarted) return false;
  return m_isDemanded || isKeptAlive() ||
         std::any_of(m_rules.queueDirectories.begin(), m_rules.queueDirectories.end(), m_surroundings->holdsFiles);
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
