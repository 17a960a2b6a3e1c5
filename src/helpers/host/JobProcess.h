#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "helpers/host/ProcessPlan.h"

namespace mirvel::host {

/// The first process of a run, leader of a session and a process group of its own. The owner collects its exit with
/// waitpid(2); destroying the object doesn't end the process.
struct JobProcess {
  pid_t id = 0;
  FileDescriptor output;   ///< non-blocking end of a pipe with its output; none if the file redirects all of it
  FileDescriptor failure;  ///< see `startFailure`

  /// Starts the process and returns immediately. A failure in the child, such as a missing program or folder, is
  /// reported by `startFailure` after the process has ended. Fails with `NotFound` if the user or group doesn't exist,
  /// with `MissingKey` without a program, and with `LimitExceeded` if there are too many processes or descriptors or
  /// too little memory: the same job may start later.
  ///
  /// The environment is that of the plan, then that of its user, then `usual`; the first one that has a variable wins.
  static Result<JobProcess> start(const ProcessPlan& plan, const Environment& usual);

  /// For a process that has ended: why its program wasn't run, such as "can't run the program: No such file or
  /// directory"; none if it was run.
  std::optional<std::string> startFailure() const;
};

/// The exit status of a child that couldn't run its program: EX_CONFIG of sysexits(3).
inline constexpr int startFailureCode = 78;

}  // namespace mirvel::host
