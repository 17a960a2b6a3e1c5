#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/process/FileDescriptor.h"
#include "core/schedule/ComingRuns.h"

namespace mirvel::host {

/// A moment on two clocks, to the millisecond. Intervals, throttling and time limits use `running`; calendar intervals
/// and the log use `wall`.
struct HostTime {
  std::chrono::milliseconds running{0};  ///< monotonic, since an arbitrary moment; includes the time spent asleep
  std::chrono::sys_time<std::chrono::milliseconds> wall{};  ///< jumps when the clock is set
};

/// The current time on both clocks.
HostTime currentTime();

/// Wakes a poll loop at a moment of the running clock, immediately if the machine slept past that moment, and whenever
/// the wall clock is set. On Linux these are two descriptors (timerfd); elsewhere the loop has to limit its wait to
/// `timeout`, and notices both up to a minute late. For one thread.
class Alarm {
 public:
  Alarm();

  /// Readable when the alarm goes off; -1 where `timeout` is used instead.
  int timer() const { return m_timer.number(); }
  /// Readable when the wall clock was set; -1 likewise.
  int clockChange() const { return m_clockChange.number(); }

  /// Replaces the moment of the alarm; none switches it off.
  void set(std::optional<std::chrono::milliseconds> at);
  /// The longest that poll(2) may wait, in milliseconds; -1: without limit.
  int timeout(const HostTime& now) const;
  /// Makes both descriptors unreadable again. Called when either became readable.
  void acknowledge();

 private:
  void watchClock();

  FileDescriptor m_timer;
  FileDescriptor m_clockChange;
  std::optional<std::chrono::milliseconds> m_at;
};

/// Computes the runs of calendar rules in the machine's time zone, and caches the offsets of that zone. For one
/// thread.
class Calendar {
 public:
  /// `zone` is a name of the time zone database, such as "Europe/Berlin".
  explicit Calendar(std::string zone) : m_zone(std::move(zone)) {}

  /// The first run of any of the rules later than `after`; none if there is none within eight years, the longest time
  /// between two 29 Februaries.
  std::optional<std::chrono::sys_seconds> firstRun(std::span<const CalendarRule> rules, std::chrono::sys_seconds after);
  /// The newest runs of any of the rules later than `after` and not later than `until`, within the last ten years: the
  /// oldest first, each time once, at most `most`. Takes longer than `firstRun`.
  std::vector<std::chrono::sys_seconds> lastRuns(std::span<const CalendarRule> rules, std::chrono::sys_seconds after,
                                                 std::chrono::sys_seconds until, std::size_t most) const;
  /// Returns whether the zone differs from the previous one; runs computed before are then invalid.
  bool setZone(const std::string& zone);

 private:
  std::string m_zone;
  std::chrono::sys_seconds m_from{};  ///< beginning of `m_stretches`
  std::optional<ZoneStretches> m_stretches;
};

}  // namespace mirvel::host
