#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/JobReport.h"

namespace mirvel::demo {

/// What a sample job has printed. A line that begins with a colon gets the date before it, as date(1) writes it.
struct SampleOutput {
  std::vector<std::string> usual = {};                    ///< of each run
  std::vector<std::vector<std::string>> ofLastRuns = {};  ///< instead, of the last runs; the newest is the last one
};

/// Writes the log that a host would have kept of the runs in a report, with what they have printed, and appends the
/// latter to the output file as well if there is a path. `folder` is that of the host's log. Fails with the error of
/// the file that couldn't be written.
Result<void> writeSampleLog(const JobReport& report, const SampleOutput& output, const std::filesystem::path& folder,
                            const std::filesystem::path& outputFile);

}  // namespace mirvel::demo
