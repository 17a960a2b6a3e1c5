#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace mirvel::host {

/// One run of a job, told in a way by which its processes are found by another host, too.
struct JobRun {
  std::string mark;        ///< what `markVariable` holds in the environment of all its processes
  pid_t leader = 0;        ///< its first process, of which session and process group have their number; 0: not known
  std::int64_t start = 0;  ///< when that began, see `ProcessStatus`; a number is given to another process later
  bool isLeaderAlone = false;  ///< what the first process leaves running isn't the job's business
};

inline constexpr const char* markVariable = "MIRVEL_RUN";

enum class Reach {
  Group,      ///< the process group: what launchd ends with the job's own process
  Everything  ///< also what has begun a group or session of its own, by the mark, where the system shows that
};

/// The processes of a run that haven't ended yet.
std::vector<pid_t> processesOf(const JobRun& run, Reach reach);

/// Sends a signal to all of them.
void signalRun(const JobRun& run, Reach reach, int signal);

/// A text that is another one after each start of the machine, or of the container whose processes these are: until
/// then numbers and times of processes can be compared. Empty where nobody can tell.
std::string bootIdentity();

}  // namespace mirvel::host
