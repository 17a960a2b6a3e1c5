#include "helpers/host/HostTime.h"

#include <time.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/timerfd.h>
#endif

#include <algorithm>
#include <cstdint>

namespace mirvel::host {

using namespace std::chrono;

namespace {

#ifdef __linux__
constexpr clockid_t runningClock = CLOCK_BOOTTIME;
#else
constexpr clockid_t runningClock = CLOCK_MONOTONIC;  // on macOS, unlike Linux, it includes the time spent asleep
#endif

/// The runs between the moments, both exclusive, sorted and without duplicates.
std::vector<sys_seconds> runsOf(std::span<const CalendarRule> rules, const ZoneStretches& zone, sys_seconds after,
                                sys_seconds end) {
  std::vector<sys_seconds> result;
  for (const CalendarRule& rule : rules) {
    forEachRun(rule, zone, after, end, [&](sys_seconds run) { result.push_back(run); });
  }
  std::sort(result.begin(), result.end());
  result.erase(std::unique(result.begin(), result.end()), result.end());
  return result;
}

milliseconds read(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return seconds(time.tv_sec) + duration_cast<milliseconds>(nanoseconds(time.tv_nsec));
}

}  // namespace

HostTime currentTime() {
  return {.running = read(runningClock), .wall = sys_time<milliseconds>(read(CLOCK_REALTIME))};
}

#ifdef __linux__

// CLOCK_BOOTTIME expires immediately on waking if its time passed during sleep; CLOCK_MONOTONIC would stop meanwhile.
Alarm::Alarm()
    : m_timer(::timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      m_clockChange(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
  watchClock();
}

// A timer that never expires: its descriptor becomes readable only because the clock was set (timerfd_create(2),
// TFD_TIMER_CANCEL_ON_SET).
void Alarm::watchClock() {
  itimerspec never{};
  never.it_value.tv_sec = std::int64_t{1} << 40;
  ::timerfd_settime(m_clockChange.number(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

void Alarm::set(std::optional<milliseconds> at) {
  if (m_at == at) return;
  m_at = at;
  itimerspec when{};  // all zero disarms the timer
  if (at) {
    const milliseconds moment = std::max(*at, milliseconds(1));  // 0 would disarm it
    when.it_value.tv_sec = moment / 1s;
    when.it_value.tv_nsec = nanoseconds(moment % 1s).count();
  }
  ::timerfd_settime(m_timer.number(), TFD_TIMER_ABSTIME, &when, nullptr);
}

int Alarm::timeout(const HostTime&) const {
  return -1;
}

void Alarm::acknowledge() {
  std::uint64_t count = 0;
  (void)!::read(m_timer.number(), &count, sizeof count);  // EAGAIN: only the other one was readable
  // After the clock was set, read(2) fails with ECANCELED: the timer is armed again for the next change.
  if (::read(m_clockChange.number(), &count, sizeof count) < 0) watchClock();
}

#else

Alarm::Alarm() = default;

void Alarm::watchClock() {}

void Alarm::set(std::optional<milliseconds> at) {
  m_at = at;
}

// Neither a set clock nor waking from sleep ends poll(2) here, so it is called at least once a minute.
int Alarm::timeout(const HostTime& now) const {
  if (!m_at) return -1;
  return static_cast<int>(std::clamp(*m_at - now.running, milliseconds(0), milliseconds(60s)).count());
}

void Alarm::acknowledge() {}

#endif

std::optional<sys_seconds> Calendar::firstRun(std::span<const CalendarRule> rules, sys_seconds after) {
  constexpr auto span = days(9 * 366);  // eight years after the last moment that the cache serves
  constexpr auto usable = days(366);
  if (!m_stretches || after < m_from || after > m_from + usable) {
    m_from = after;
    m_stretches.emplace(m_zone, after, after + span);
  }
  return mirvel::firstRun(rules, *m_stretches, after);
}

// The period is extended backwards until it has enough runs: rules that run each minute cost no more than those that
// run once a year.
std::vector<sys_seconds> Calendar::lastRuns(std::span<const CalendarRule> rules, sys_seconds after, sys_seconds until,
                                            std::size_t most) const {
  constexpr days longest(10 * 366);
  const sys_seconds earliest = std::max(after, until - longest);
  std::vector<sys_seconds> result;
  if (earliest >= until) return result;
  sys_seconds begin = until;
  for (seconds period = 1h; begin > earliest && result.size() < most; period *= 8) {
    begin = until - period > earliest ? until - period : earliest;
    result = runsOf(rules, ZoneStretches(m_zone, begin, until + 1s), begin, until + 1s);
  }
  if (result.size() > most) result.erase(result.begin(), result.end() - static_cast<std::ptrdiff_t>(most));
  return result;
}

bool Calendar::setZone(const std::string& zone) {
  if (zone == m_zone) return false;
  m_zone = zone;
  m_stretches.reset();
  return true;
}

}  // namespace mirvel::host
