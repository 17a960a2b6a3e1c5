#include "helpers/host/Alarm.h"

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
constexpr clockid_t runningClock = CLOCK_MONOTONIC;  // which counts during sleep on macOS
#endif

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

Alarm::Alarm()
    : m_timer(::timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      m_clockChange(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
  watchClock();
}

void Alarm::watchClock() {
  itimerspec never{};
  never.it_value.tv_sec = std::int64_t{1} << 40;
  ::timerfd_settime(m_clockChange.number(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never, nullptr);
}

void Alarm::set(std::optional<milliseconds> at) {
  if (m_at == at) return;
  m_at = at;
  itimerspec when{};  // all 0: never
  if (at) {
    const milliseconds moment = std::max(*at, milliseconds(1));
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
  (void)!::read(m_timer.number(), &count, sizeof count);  // nothing to read is as good
  if (::read(m_clockChange.number(), &count, sizeof count) < 0) watchClock();
}

#else

Alarm::Alarm() = default;

void Alarm::watchClock() {}

void Alarm::set(std::optional<milliseconds> at) {
  m_at = at;
}

/// A minute at most: so late may a clock that was set be noticed, and a time that was slept over.
int Alarm::timeout(const HostTime& now) const {
  if (!m_at) return -1;
  return static_cast<int>(std::clamp(*m_at - now.running, milliseconds(0), milliseconds(60s)).count());
}

void Alarm::acknowledge() {}

#endif

}  // namespace mirvel::host
