#pragma once

#include <chrono>

#include "core/base/Result.h"
#include "core/files/Roots.h"

namespace mirvel::demo {

/// Writes the reports of hosts about earlier runs of some sample jobs: runs of the last days by their schedules, among
/// them failed and missed ones. The job files must exist. The demo's own hosts continue these reports. Fails with the
/// error of a file that couldn't be written.
Result<void> writeSampleRuns(const Roots& roots, std::chrono::sys_seconds now);

}  // namespace mirvel::demo
