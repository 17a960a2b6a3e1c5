#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"
#include "helpers/host/ProcessPlan.h"

namespace mirvel::host {

/// The process of a job, leader of a session and process group of its own. Whoever starts it collects it.
struct JobProcess {
  pid_t id = 0;
  FileDescriptor output;   ///< what it prints where its file names no place for that; doesn't block. None: nothing
  FileDescriptor failure;  ///< see `startFailure`

  /// Starts the process and returns at once. What goes wrong in the child itself (a missing program or folder) is told
  /// by `startFailure` when it has ended. Fails if the user or group isn't known, and with
  /// `LimitExceeded` if there can be no more children now.
  static Result<JobProcess> start(const ProcessPlan& plan, const Environment& usual);

  /// Of a process that has ended: why the program wasn't run, if it wasn't: "can't run /x: No such file or directory".
  std::optional<std::string> startFailure() const;
};

/// What a child gives back that couldn't run its program: EX_CONFIG of sysexits(3).
inline constexpr int startFailureCode = 78;

}  // namespace mirvel::host
