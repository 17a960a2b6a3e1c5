#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "core/base/Result.h"
#include "core/messages/Replies.h"
#include "core/messages/Requests.h"
#include "helpers/jobhost/Cancellation.h"

namespace mirvel {

/// What runs jobs on this machine: launchd or the embedded host. A helper uses the host of the user as whom it acts.
///
/// Each operation blocks until the host has replied. `loadTemporarily`, `unload`, `waitForEnd`, `control` and `log` may
/// be called from any thread, concurrently with each other and with one of the other operations: tests run beside the
/// changes of files. Unloading a job ends the wait for its end.
class JobHost {
 public:
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
  /// How a wait for a job has ended.
  struct Ended {
    bool hasEnded = false;              ///< false: the time limit was reached
    std::optional<RunReport> run = {};  ///< its first run since it was loaded; none if it was unloaded before its end
  };
  /// Waits until the job with the label has ended once since it was loaded, or is unloaded.
  virtual Result<Ended> waitForEnd(const std::string& label, std::chrono::seconds limit) = 0;
  /// Starts or stops a loaded job; see `messages::Control`. Fails with `NotFound` if no job of the label is loaded from
  /// the file, and with `StillRunning` if a run doesn't end in time.
  virtual Result<void> control(const std::filesystem::path& file, const std::string& label,
                               messages::Control::Order order) = 0;
  /// The lines of the log that match the query, as bytes of any encoding. Fails with `Cancelled` once it is cancelled.
  virtual Result<messages::LogLines> log(const messages::LogQuery& query, Cancellation& cancellation) = 0;
};

}  // namespace mirvel
