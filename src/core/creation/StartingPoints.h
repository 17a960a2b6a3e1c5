#pragma once

#include <string>
#include <vector>

#include "core/creation/New.h"
#include "core/files/Roots.h"
#include "core/locale/Localize.h"

namespace mirvel {

/// A usual task, and the new job to begin it with; its pages are walked through as those of any other.
struct StartingPoint {
  std::string title;
  New job = {};
};

/// To back up a folder, to run a script every night, to keep a program running, and to watch a folder. What they name
/// lies in the home folder.
std::vector<StartingPoint> startingPoints(const Localize& localize, const Roots& roots);

}  // namespace mirvel
