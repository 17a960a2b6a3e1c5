#pragma once

#include <chrono>

#include "core/base/Result.h"
#include "core/files/Roots.h"

namespace mirvel::demo {

/// Writes the reports of hosts about earlier runs of some sample jobs: runs of the last days by their schedules, among
/// them failed and missed ones, and one that goes on as long as this process lives. Also writes the logs that the
/// user's host would have kept of them. The job files must exist. The demo's own hosts continue all of this. Fails with
/// the error of a file that couldn't be written.
Result<void> writeSampleRuns(const Roots& roots, std::chrono::sys_seconds now);

}  // namespace mirvel::demo
