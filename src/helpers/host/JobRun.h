#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"

namespace mirvel::host {

/// One run of a job, identified so that any host, also one that didn't start it, can find its processes.
struct JobRun {
  std::string token;           ///< random; in the environment of its processes as `tokenVariable`
  pid_t leader = 0;            ///< its first process, leader of a session and a process group; 0: not known
  std::int64_t start = 0;      ///< start of the leader, see `ProcessStatus`: process IDs are reused, the pair isn't
  bool isLeaderAlone = false;  ///< `AbandonProcessGroup`: its other processes are left alone
};

inline constexpr const char* tokenVariable = "MIRVEL_RUN";

/// Which processes count as part of a run.
enum class Reach {
  Group,      ///< the process group, which launchd ends together with the job's own process
  Everything  ///< also processes in groups or sessions of their own, found by session and token
};

/// The processes of a run that haven't ended yet, never the calling one. Those that have left both session and group
/// are found by their token where the system shows the environment of processes (Linux, same user or root), and only
/// until they replace that environment.
std::vector<pid_t> processesOf(const JobRun& run, Reach reach);

/// Sends a signal to these processes. Those that are forked meanwhile by a process outside the leader's group can be
/// missed: the caller repeats SIGKILL until `processesOf` returns none.
void signalRun(const JobRun& run, Reach reach, int signal);

/// A run as it is recorded on disk.
struct RunRecord {
  std::string label;
  std::filesystem::path file;  ///< of the job
  JobRun run;
};

/// The records of runs whose processes may still exist: if a host is killed, the next one finds what is left of its
/// runs and ends it, so that no job runs twice. Each record is a small property list, replaced atomically. It isn't
/// flushed to the device, because after a power failure the processes are gone as well. For one thread.
class RunRecords {
 public:
  /// The folder is created with the first record; its parent must exist.
  explicit RunRecords(std::filesystem::path folder);

  /// Called before a process is started, so that its token is recorded whatever happens next, and again once its
  /// process ID is known. Fails with the error of the system; the previous record then remains.
  Result<void> write(const RunRecord& record) const;
  /// Does nothing if there is no such record.
  void remove(const JobRun& run) const;
  /// The records written since the machine was booted, also by earlier hosts. All other files of the folder are
  /// deleted: older records, whose process IDs mean nothing any more, and damaged ones.
  std::vector<RunRecord> read() const;

 private:
  std::filesystem::path m_folder;
  std::string m_boot;  ///< identifies this boot; empty if the system doesn't say
};

}  // namespace mirvel::host
