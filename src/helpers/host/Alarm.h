#pragma once

#include <chrono>
#include <optional>

#include "core/process/FileDescriptor.h"
#include "helpers/host/HostedJob.h"

namespace mirvel::host {

/// Both clocks now. The running one counts while the machine sleeps.
HostTime currentTime();

/// Wakes the loop at a moment of the running clock, at once if the machine slept past it, and when somebody sets the
/// clock on the wall.
class Alarm {
 public:
  Alarm();

  /// Can be read when it goes off; -1 where the system has no such thing and `timeout` alone must do.
  int timer() const { return m_timer.number(); }
  int clockChange() const { return m_clockChange.number(); }

  /// None: never.
  void set(std::optional<std::chrono::milliseconds> at);
  /// How long poll(2) may wait at most.
  int timeout(const HostTime& now) const;
  /// Makes the descriptors unreadable again.
  void acknowledge();

 private:
  void watchClock();

  FileDescriptor m_timer;
  FileDescriptor m_clockChange;
  std::optional<std::chrono::milliseconds> m_at;
};

}  // namespace mirvel::host
