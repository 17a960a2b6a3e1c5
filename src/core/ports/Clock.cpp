#include "core/ports/Clock.h"

#include <chrono>

namespace mirvel {

std::chrono::sys_seconds Clock::currentSecond() const {
  using namespace std::chrono;
  return sys_seconds(floor<seconds>(duration<double>(secondsSince1970())));
}

double SystemClock::secondsSince1970() const {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace mirvel
