#pragma once

#include <spawn.h>

#include <string>
#include <vector>

#include "core/process/Environment.h"

namespace mirvel {

/// Arguments or variables as exec(3) takes them: a pointer to each text, which must stay as it is, and a null.
std::vector<char*> execPointers(std::vector<std::string>& texts);

/// "name=value" for each variable.
std::vector<std::string> execVariables(const Environment& environment);

/// What a child process is started with: the descriptors that it is given and no others, and signals as at login. Each
/// step gives 0 or an errno value.
class SpawnPlan {
 public:
  SpawnPlan();
  ~SpawnPlan();
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  /// The child opens the file under that number.
  int open(int number, const char* path, int flags);
  /// The child has a descriptor of ours under that number.
  int give(int ours, int number);
  int resetSignals();
  /// The program is run by its path; its arguments are those after its name.
  int start(pid_t& id, const std::string& program, const std::vector<std::string>& arguments,
            const Environment& environment);

 private:
  posix_spawn_file_actions_t m_actions{};
  posix_spawnattr_t m_attributes{};
};

}  // namespace mirvel
