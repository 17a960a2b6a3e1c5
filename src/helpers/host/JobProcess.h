#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/messages/JobReport.h"
#include "core/process/FileDescriptor.h"
#include "helpers/host/ProcessPlan.h"

namespace mirvel::host {

/// Why the program of a job wasn't run.
struct StartFailure {
  StartObstacle obstacle = StartObstacle::Other;
  int systemCode = 0;        ///< errno; 0: none
  std::string subject = {};  ///< the path or name at fault; empty: none

  /// The failure of `JobProcess::start`.
  static StartFailure of(const Error& error, const ProcessPlan& plan);
  /// Such as "can't change to the working directory: No such file or directory".
  std::string text() const;
  RunEnd end() const;
};

/// The first process of a run, leader of a session and a process group of its own. The owner collects its exit with
/// waitpid(2); destroying the object doesn't end the process.
struct JobProcess {
  pid_t id = 0;
  FileDescriptor output;   ///< non-blocking end of a pipe with its output; none if the file redirects all of it
  FileDescriptor failure;  ///< non-blocking; readable or at its end as soon as the program was run or couldn't be run

  /// Starts the process and returns immediately. A failure in the child, such as a missing program or folder, is
  /// reported by `startFailure` after the process has ended. Fails with `NotFound` if the user or group doesn't exist,
  /// with `MissingKey` without a program, and with `LimitExceeded` if there are too many processes or descriptors or
  /// too little memory: the same job may start later.
  ///
  /// The environment is that of the plan, then that of its user, then `usual`; the first one that has a variable wins.
  static Result<JobProcess> start(const ProcessPlan& plan, const Environment& usual);

  /// Called when `failure` has become readable, or the process has ended: why its program wasn't run; none if it was
  /// run, or if a signal ended the process before. The plan is the one with which it was started.
  std::optional<StartFailure> startFailure(const ProcessPlan& plan) const;
};

/// The exit status of a child that couldn't run its program: EX_CONFIG of sysexits(3). A program can have it, too.
inline constexpr int startFailureCode = 78;

}  // namespace mirvel::host
