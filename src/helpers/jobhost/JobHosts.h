#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// What runs jobs for the user whose rights this process has: launchd where its tool is, and otherwise the host that
/// comes with the program and lies beside this process's own. On a machine below a root of its own it is always that
/// one. The runner must outlive the host.
std::unique_ptr<JobHost> jobHostOfThisMachine(const std::optional<std::filesystem::path>& root,
                                              const Environment& environment, ProcessRunner& runner);

}  // namespace mirvel
