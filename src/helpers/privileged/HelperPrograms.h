#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/files/Roots.h"
#include "core/process/Environment.h"
#include "helpers/privileged/Elevation.h"
#include "helpers/wire/ProcessHelperConnection.h"

namespace mirvel {

/// The helpers' programs, and how the application starts them.
struct HelperPrograms {
  wire::HelperProgram action;  ///< the service that acts as the user
  std::string privileged;      ///< the path of the one that acts as root
  std::vector<std::string> privilegedArguments = {};
  Elevation elevation = {};

  /// Those in the folder, for the user of this process. `machine` is the folder of another machine, whose roots are
  /// given; there, and for root, no elevation is needed.
  static HelperPrograms in(const std::filesystem::path& folder, const Roots& roots, const Environment& environment,
                           const std::optional<std::filesystem::path>& machine);
};

}  // namespace mirvel
