#pragma once

#include "core/ports/Clock.h"

namespace mirvel::testdata {

class FakeClock final : public Clock {
 public:
  double now = 1'000'000;

  double secondsSince1970() const override { return now; }
};

}  // namespace mirvel::testdata
