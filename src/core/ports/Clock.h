#pragma once

#include <chrono>

namespace mirvel {

/// What time it is.
class Clock {
 public:
  Clock() = default;
  virtual ~Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;

  /// Seconds since 1970, with fractions.
  virtual double secondsSince1970() const = 0;
  /// The second that has begun.
  std::chrono::sys_seconds currentSecond() const;
};

/// The clock of the machine.
class SystemClock final : public Clock {
 public:
  double secondsSince1970() const override;
};

}  // namespace mirvel
