#pragma once

#include <spawn.h>

#include <string>
#include <vector>

#include "core/process/Environment.h"

namespace mirvel {

/// Pointers to strings for exec(3), followed by a null pointer. Valid as long as the strings aren't changed.
std::vector<char*> execPointers(std::vector<std::string>& texts);

/// The variables as "name=value", for exec(3).
std::vector<std::string> execVariables(const Environment& environment);

/// Prepares and starts a child process with posix_spawn(3), which unlike fork(2) is safe with threads. The child gets
/// the descriptors that are set up here and no others: all of ours must be close-on-exec. It starts with all signals
/// unblocked and at their default actions. For one child and one thread.
///
///     SpawnPlan plan;
///     plan.open(STDIN_FILENO, "/dev/null", O_RDONLY);
///     plan.give(pipe.write.number(), STDOUT_FILENO);
///     const int failure = plan.start(id, "/bin/ls", {"-l"}, environment);
class SpawnPlan {
 public:
  SpawnPlan();
  ~SpawnPlan();
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  /// The child opens a file as descriptor `number`.
  void open(int number, const char* path, int flags);
  /// The child inherits our descriptor `ours` as `number`.
  void give(int ours, int number);
  /// Starts the program at a path; `arguments` don't include its name. Returns 0 or an errno value: that of the first
  /// step that failed, or ENOENT or EACCES if the program can't be executed. On success, `id` is set and the caller
  /// must wait for the child.
  [[nodiscard]] int start(pid_t& id, const std::string& program, const std::vector<std::string>& arguments,
                          const Environment& environment);

 private:
  void resetSignals();
  void note(int failure);

  posix_spawn_file_actions_t m_actions{};
  posix_spawnattr_t m_attributes{};
  int m_failure = 0;  ///< the first one
};

}  // namespace mirvel
