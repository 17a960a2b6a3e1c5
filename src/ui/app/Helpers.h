#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/support/Environment.h"
#include "core/support/Roots.h"
#include "helpers/privileged/Elevation.h"
#include "helpers/wire/ProcessHelperConnection.h"

namespace mirvel::ui {

/// Where a helper program lies: beside the installed application, or in the folder where it was built.
std::string helperProgram(const std::string& name);

/// The service that acts as the user; `machine` is the folder of another machine, as in `Application`.
wire::HelperProgram actionService(const Environment& environment, const std::optional<std::filesystem::path>& machine);

/// How the other becomes root. On another machine, and for root, there is no need.
Elevation elevation(const Environment& environment, bool isOtherMachine);
/// What it is told of the user for whom it works.
std::vector<std::string> privilegedArguments(const Roots& roots, const Environment& environment,
                                             const std::optional<std::filesystem::path>& machine);

}  // namespace mirvel::ui
