#pragma once

#include <functional>

#include "core/creation/New.h"

namespace mirvel {

class Program;

/// What the pages of the sheet share.
struct NewSheet {
  Program& program;
  New job;
  std::function<void()> changed = {};

  void tellOfChange() const {
    if (changed) changed();
  }
};

}  // namespace mirvel
