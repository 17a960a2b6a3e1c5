#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

class CommandRepairs;
class Localize;

/// The jobs that run a script as the same user.
struct ScriptJobs {
  std::string user;  ///< the login name; empty: each user
  Jobs jobs = {};
};

/// The launchd jobs whose command names the script by one of these paths, by the user who runs them. `thisUser` is the
/// login name of the user whose agents the catalogue has.
std::vector<ScriptJobs> jobsOfScript(const Jobs& jobs, const std::vector<std::filesystem::path>& paths,
                                     const CommandRepairs& repairs, const std::string& thisUser);

/// A line for each user: "Run by “backup” and “sync” as root". That there are none, if there are none.
std::string textOf(const std::vector<ScriptJobs>& jobs, const Localize& localize);

}  // namespace mirvel
