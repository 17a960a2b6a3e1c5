#pragma once

#include <sys/types.h>

#include <optional>
#include <vector>

#include "core/base/Result.h"
#include "helpers/host/ProcessPlan.h"

namespace mirvel::host {

/// As whom a process runs.
struct JobUser {
  std::optional<uid_t> user;
  std::optional<gid_t> group;
  std::vector<gid_t> groups;  ///< all of them, if `group` is there
  Environment environment;    ///< HOME, USER, LOGNAME and SHELL of that user

  /// By the plan's names. Only root can be another, so that for anybody else they don't count, as launchd.plist(5) has
  /// it. Fails with `NotFound` for a name that the user database doesn't know.
  static Result<JobUser> of(const ProcessPlan& plan);

  /// Makes this process run as that user; 0 or an errno value. Safe between fork and exec.
  int assume() const;
};

}  // namespace mirvel::host
