#pragma once

#include <chrono>

namespace mirvel {

/// The current time. Logic that depends on it takes a clock, so that tests can set it. Thread-safe.
class Clock {
 public:
  Clock() = default;
  virtual ~Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;

  /// Seconds since 1970 (UTC), with fractions. Can go backwards when the user sets the clock.
  virtual double secondsSince1970() const = 0;
  /// The current time, rounded down to a whole second.
  std::chrono::sys_seconds currentSecond() const;
};

/// The clock of the machine.
class SystemClock final : public Clock {
 public:
  double secondsSince1970() const override;
};

}  // namespace mirvel
