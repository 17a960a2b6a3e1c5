#pragma once

#include <optional>
#include <string>

#include "core/files/Roots.h"

namespace mirvel {

/// What the readers of jobs know of the program's settings: a copy that is taken on the main thread, so that a scan
/// shares nothing that changes.
struct ScanSettings {
  Roots roots;
  std::string osascript;                    ///< path of the tool
  std::optional<std::string> scriptEditor;  ///< path of the application for its scripts, where there is one
  bool showSystemJobs = false;
  bool showInternalHelpers = false;
  bool editSystemJobs = false;
};

}  // namespace mirvel
