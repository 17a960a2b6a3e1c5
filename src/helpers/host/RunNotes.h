#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "helpers/host/RunProcesses.h"

namespace mirvel::host {

/// A run that a host has begun, as it is noted on disk.
struct RunNote {
  std::string label;
  std::filesystem::path file;  ///< of the job
  JobRun run;
};

/// The notes on the runs whose processes may still be there, so that after a host that was killed the next one finds
/// what is left and nothing runs twice. One small file each. They aren't flushed to the device: without power there are
/// no processes either.
class RunNotes {
 public:
  /// The folder is made with the first note.
  explicit RunNotes(std::filesystem::path folder) : m_folder(std::move(folder)), m_boot(bootIdentity()) {}

  /// Before the process is started, so that its mark is known whatever happens next, and again when its number is.
  Result<void> write(const RunNote& note) const;
  void remove(const JobRun& run) const;
  /// What earlier hosts have noted since the machine was started. Older notes, and those that say nothing, are removed.
  std::vector<RunNote> read() const;

 private:
  std::filesystem::path m_folder;
  std::string m_boot;
};

}  // namespace mirvel::host
