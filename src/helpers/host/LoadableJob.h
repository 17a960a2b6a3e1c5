#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/jobfile/Plist.h"
#include "helpers/host/JobRules.h"
#include "helpers/host/ProcessPlan.h"

namespace mirvel::host {

/// Reads a job file. Fails with `BadArgument` if the path is relative, with `NotTrusted` if others could have written
/// the file, and with the errors of reading it.
Result<jobfile::Plist> readJob(const std::filesystem::path& file);

/// A job that can be run as its file says.
struct LoadableJob {
  JobRules rules;
  ProcessPlan plan;
  std::vector<std::string> ignored;  ///< what the host ignores of it, as sentences for the log

  /// Fails with `MissingKey` without a label or program, and with `WrongType` if an essential value is unusable
  /// (`checkRunnable`). `file` is that of the job.
  static Result<LoadableJob> of(const jobfile::Plist& plist, const std::filesystem::path& file);
};

}  // namespace mirvel::host
