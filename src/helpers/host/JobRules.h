#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/schedule/CalendarRule.h"

namespace mirvel::host {

/// When a job is started and stopped: what its file says of that, as the host reads it. See launchd.plist(5).
struct JobRules {
  struct Condition {
    std::string subject;  ///< a path, or a label
    bool isWanted;        ///< whether it must be there, or must not
  };

  std::string label;
  bool runAtLoad = false;
  bool launchOnlyOnce = false;
  bool abandonProcessGroup = false;
  bool startOnMount = false;

  bool keepAlive = false;               ///< whatever happens
  bool onlyAfterInitialDemand = false;  ///< the conditions below count from the first start on
  std::optional<bool> afterSuccess;     ///< restart after an exit with 0; false: after any other
  std::optional<bool> afterCrash;       ///< restart after the signal of a crash; false: after any other end
  std::vector<Condition> paths;
  std::vector<Condition> otherJobs;

  std::optional<std::chrono::seconds> interval;
  std::vector<CalendarRule> calendar;
  std::vector<std::string> watchPaths;
  std::vector<std::string> queueDirectories;

  std::chrono::seconds throttle{10};     ///< between two starts
  std::chrono::seconds exitTimeOut{20};  ///< from SIGTERM to SIGKILL

  static JobRules of(const jobfile::Plist& plist);

  /// Everything in the file system that `HostedJob` asks about.
  std::vector<std::string> pathsToWatch() const;
};

/// The keys of the job that this host can't serve; the rest of the job is run.
std::vector<std::string> unservedKeys(const jobfile::Plist& plist);
/// What in the file has a value that doesn't fit it, by key path; it is ignored, as launchd does.
std::vector<std::string> unusableValues(const jobfile::Plist& plist);
/// Fails with `WrongType` for a job that would run another command than its file says, or with other rights, because
/// the value of a key can't be used.
Result<void> checkRunnable(const jobfile::Plist& plist, uid_t user);

}  // namespace mirvel::host
