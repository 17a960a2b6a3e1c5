#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// The host of the user as whom this process runs: launchd where launchctl is installed, otherwise the embedded host,
/// whose program is next to that of this process. With a `root`, the folder that represents a machine (demo, tests), it
/// is always the embedded host. The runner must outlive the result.
std::unique_ptr<JobHost> jobHostOfThisMachine(const std::optional<std::filesystem::path>& root,
                                              const Environment& environment, ProcessRunner& runner);

}  // namespace mirvel
