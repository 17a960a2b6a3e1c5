#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/Replies.h"

namespace mirvel {

/// What runs jobs on this machine: launchd or the embedded host. A helper uses the host of the user as whom it acts.
///
/// Each operation blocks until the host has replied. `loadTemporarily`, `unload`, `waitForEnd` and `log` may be called
/// from any thread, concurrently with each other and with one of the other operations: tests run beside the changes of
/// files. Unloading a job ends the wait for its end.
class JobHost {
 public:
  using LogLine = messages::LogLine;

  JobHost() = default;
  virtual ~JobHost() = default;
  JobHost(const JobHost&) = delete;
  JobHost& operator=(const JobHost&) = delete;

  /// Makes sure that the host is running and has loaded the user's enabled jobs. Does nothing where the system ensures
  /// that.
  virtual Result<void> start() { return {}; }
  /// Ends the host with all its jobs and waits for that; the next host loads them again. Does nothing if no host is
  /// running, or where the system runs the jobs.
  virtual Result<void> quit() { return {}; }
  /// Loads a job file. Fails if a job of the same label is loaded, which isn't affected.
  virtual Result<void> load(const std::filesystem::path& file) = 0;
  /// Likewise for a test run: the job isn't loaded again when the host restarts, and is unloaded when this process
  /// ends, where the host can notice that.
  virtual Result<void> loadTemporarily(const std::filesystem::path& file) { return load(file); }
  /// Unloads the job with the label, or without a label that of the file, and waits until its processes have ended.
  /// Succeeds if no such job is loaded, and if the job of that label was loaded from another file that still exists,
  /// which is left alone. Fails with `BadArgument` for an empty label, and with `NotFound` if there is neither a label
  /// nor the file and the host identifies jobs by label only.
  virtual Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) = 0;
  /// Whether the host knows which job was loaded from a file; otherwise it identifies jobs by label only.
  virtual bool knowsFiles() const { return true; }
  /// Unloads the job that was loaded from the file, which may not exist any more, and no other. A host that identifies
  /// jobs by label only checks the job of the label.
  virtual Result<void> unloadFrom(const std::filesystem::path& file, const std::optional<std::string>&) {
    return unload(file, std::nullopt);
  }
  /// Waits until the job with the label has ended once since it was loaded. False if it hasn't within the limit.
  virtual Result<bool> waitForEnd(const std::string& label, std::chrono::seconds limit) = 0;
  /// The lines of the log from the last `period` that contain the text, the oldest first.
  virtual Result<std::vector<LogLine>> log(std::chrono::seconds period, const std::string& text) = 0;
};

}  // namespace mirvel
