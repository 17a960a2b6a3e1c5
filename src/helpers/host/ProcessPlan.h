#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/jobfile/Plist.h"
#include "core/process/Environment.h"

namespace mirvel::host {

/// How the process of a job is started, as its file says. What the file doesn't specify is none, and stays as the host
/// has it.
struct ProcessPlan {
  struct ResourceLimit {
    int resource;  ///< of setrlimit(2)
    std::optional<std::int64_t> soft = {};
    std::optional<std::int64_t> hard = {};  ///< negative: unlimited
  };

  std::string program;                 ///< empty: the file names none; without a slash it is searched for in the PATH
  std::vector<std::string> arguments;  ///< with argument 0
  Environment environment;             ///< `EnvironmentVariables`
  std::optional<std::string> workingDirectory;
  std::optional<std::string> rootDirectory;
  std::optional<std::string> standardIn;
  std::optional<std::string> standardOut;
  std::optional<std::string> standardError;
  std::optional<mode_t> umask;
  std::optional<int> nice;
  std::vector<ResourceLimit> limits;
  std::optional<std::string> userName;   ///< only root's host follows this
  std::optional<std::string> groupName;  ///< likewise
  bool initGroups = true;

  /// Never fails: values out of range are limited to it (`Nice`, `Umask`). See `checkRunnable` for the values that a
  /// job can't run without.
  static ProcessPlan of(const jobfile::Plist& plist);
};

/// The environment that every job gets in addition to its own: a PATH of the system's folders only, and the variables
/// of the host that identify the user and the session.
Environment jobEnvironment(const Environment& ofHost);

/// The user and groups as which a process runs.
struct JobUser {
  std::optional<uid_t> user;  ///< none: that of the host
  std::optional<gid_t> group;
  std::vector<gid_t> groups;  ///< all of them, used if `group` is set
  Environment environment;    ///< HOME, USER, LOGNAME and SHELL of the user

  /// Looks up the names of the plan. For hosts of other users than root it returns an empty value, since
  /// launchd.plist(5) ignores the keys there. Fails with `NotFound`, and the key of the job file, for a name that isn't
  /// in the user database.
  static Result<JobUser> of(const ProcessPlan& plan);

  /// Changes the calling process to that user for good. Returns 0 or an errno value. Async-signal-safe, so it can be
  /// called between fork and exec.
  int assume() const;
};

}  // namespace mirvel::host
