#include "core/ports/Clock.h"

#include <chrono>
#include <cmath>

namespace mirvel {

std::chrono::sys_seconds Clock::currentSecond() const {
  return std::chrono::sys_seconds(std::chrono::seconds(std::llround(std::floor(secondsSince1970()))));
}

double SystemClock::secondsSince1970() const {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace mirvel
