#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/files/Roots.h"

namespace mirvel {

/// A snapshot of the settings that reading jobs depends on. Taken on the main thread, so that a scan shares no mutable
/// state.
struct ScanSettings {
  Roots roots;
  std::string osascript;                            ///< path of the tool
  std::optional<std::string> scriptEditor;          ///< path of the application that edits AppleScripts, if it exists
  std::vector<std::filesystem::path> folders = {};  ///< the user's extra folders, as they are in the settings
  bool showSystemJobs = false;
  bool showInternalHelpers = false;
  bool editSystemJobs = false;
};

}  // namespace mirvel
