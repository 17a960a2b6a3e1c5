#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "core/jobfile/Plist.h"
#include "core/process/Environment.h"

namespace mirvel::host {

/// How a job's process is made: what its file says of that.
struct ProcessPlan {
  struct Limit {
    int resource;  ///< of setrlimit(2)
    std::optional<std::int64_t> soft = {};
    std::optional<std::int64_t> hard = {};
  };

  std::string program;  ///< one without a slash is looked for in the job's PATH
  std::vector<std::string> arguments;
  Environment environment;  ///< what the job itself sets
  std::optional<std::string> workingDirectory;
  std::optional<std::string> rootDirectory;
  std::optional<std::string> standardIn;
  std::optional<std::string> standardOut;
  std::optional<std::string> standardError;
  std::optional<mode_t> umask;
  std::optional<int> nice;
  std::vector<Limit> limits;
  std::optional<std::string> userName;  ///< counts for root's jobs alone, as does the group
  std::optional<std::string> groupName;
  bool initGroups = true;

  static ProcessPlan of(const jobfile::Plist& plist);
};

/// The variables that every job gets: a plain path, who and where the user is, and what leads to the user's session.
Environment jobEnvironment(const Environment& ofHost);

}  // namespace mirvel::host
