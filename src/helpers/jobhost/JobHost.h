#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/messages/Replies.h"

namespace mirvel {

/// Runs jobs on this machine. A helper uses the host of the user that it acts as. Each operation blocks until the host
/// has answered. `waitForEnd` and `log` may be called from any thread, beside each other and beside one of the others;
/// to unload a job ends the wait for its end.
class JobHost {
 public:
  using LogLine = messages::LogLine;

  JobHost() = default;
  virtual ~JobHost() = default;
  JobHost(const JobHost&) = delete;
  JobHost& operator=(const JobHost&) = delete;

  /// Makes sure that there is a host, and that it has loaded the user's enabled jobs. Nothing to do where the system
  /// itself sees to that.
  virtual Result<void> start() { return {}; }
  /// Loads the job file. One that is loaded already under its label stays as it is, and that is an error.
  virtual Result<void> load(const std::filesystem::path& file) = 0;
  /// The same for a job that is only tried: it isn't loaded again when the host is started anew, and is
  /// unloaded when this process ends, where the host can tell.
  virtual Result<void> loadTemporarily(const std::filesystem::path& file) { return load(file); }
  /// Unloads the job of the label, or, without one, of the file; its process is stopped. Nothing loaded is no error,
  /// and a job of the label that was loaded from another file, which is still there, stays. An empty label is
  /// `BadArgument`. A file that has gone is `NotFound` without a label, if the host knows its jobs by label alone.
  virtual Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) = 0;
  /// Whether it can tell what was loaded from a file that tells no label; otherwise it knows its jobs by label alone.
  virtual bool knowsFiles() const { return true; }
  /// Unloads what was loaded from the file, which may have gone, and nothing else. A host that knows its jobs by label
  /// alone looks at the one of the label.
  virtual Result<void> unloadFrom(const std::filesystem::path& file, const std::optional<std::string>&) {
    return unload(file, std::nullopt);
  }
  /// Waits until the loaded job of the label has run to its end once since it was loaded: false if it hasn't within the
  /// time.
  virtual Result<bool> waitForEnd(const std::string& label, std::chrono::seconds limit) = 0;
  /// What the log holds of the last `period` that mentions the text, the oldest first.
  virtual Result<std::vector<LogLine>> log(std::chrono::seconds period, const std::string& text) = 0;
};

}  // namespace mirvel
