#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/schedule/CalendarRule.h"

namespace mirvel::host {

/// When a job is started and stopped according to its file. The meaning of the keys is that of launchd.plist(5).
struct JobRules {
  struct Condition {
    std::string subject;  ///< a path or a label
    bool isWanted;        ///< whether it must exist or be loaded, or must not
  };

  std::string label;
  bool runAtLoad = false;
  bool launchOnlyOnce = false;
  bool abandonProcessGroup = false;
  bool startOnMount = false;

  bool keepAlive = false;               ///< unconditionally
  bool onlyAfterInitialDemand = false;  ///< the conditions below apply only after the first start
  std::optional<bool> afterSuccess;     ///< true: restart after exit status 0; false: after any other end
  std::optional<bool> afterCrash;       ///< true: restart after a crash signal; false: after any other end
  std::vector<Condition> paths;         ///< each one that is met keeps the job alive
  std::vector<Condition> otherJobs;     ///< likewise

  std::optional<std::chrono::seconds> interval;  ///< greater than 0, at most 100 years
  std::vector<CalendarRule> calendar;            ///< without those that have an unusable value
  std::vector<std::string> watchPaths;
  std::vector<std::string> queueDirectories;

  std::chrono::seconds throttle{10};     ///< between two starts, at least 1 s
  std::chrono::seconds exitTimeOut{20};  ///< from SIGTERM to SIGKILL

  /// Never fails. A job with an unusable value gets the default of that key. A calendar interval with one is dropped:
  /// without the value it would fire far more often than intended. `ExitTimeOut` 0 means `longestStop`.
  static JobRules of(const jobfile::Plist& plist);

  /// The paths that `HostedJob` depends on, sorted and without duplicates.
  std::vector<std::string> pathsToWatch() const;
};

/// The keys of the job that the embedded host doesn't support, such as `Sockets`. It runs the job without them.
std::vector<std::string> unservedKeys(const jobfile::Plist& plist);
/// The key paths whose values are of the wrong type, such as "EnvironmentVariables.A". They are ignored, as launchd
/// does.
std::vector<std::string> unusableValues(const jobfile::Plist& plist);
/// Fails with `WrongType` for a job that would run another command than its file says, or with other rights, if an
/// unusable value were ignored. `user` is the user of the host: the keys for the rights count only for root.
Result<void> checkRunnable(const jobfile::Plist& plist, uid_t user);

}  // namespace mirvel::host
