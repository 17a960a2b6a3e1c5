#include "core/support/Clock.h"

#include <chrono>

namespace mirvel {

double SystemClock::secondsSince1970() const {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

}  // namespace mirvel
