#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/process/ProcessRunner.h"
#include "helpers/hostdata/HostClient.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/hostdata/StoredLog.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// The host for machines without launchd: `mirvel-host`, one process per user, started on demand by whatever operation
/// needs it. If it is shutting down, the operation waits for its end and goes to the next host; if it is killed before
/// it replies, only operations that can be repeated safely do. Thread-safe as `JobHost` requires.
class EmbeddedHost : public JobHost {
 public:
  struct Settings {
    HostPlaces places;
    std::filesystem::path program;                       ///< `mirvel-host`
    std::vector<std::string> arguments = {};             ///< with which it uses the same places, such as `--root DIR`
    std::filesystem::path autostart = {};                ///< folder of the entry that starts it at login; empty: none
    std::vector<std::filesystem::path> jobFolders = {};  ///< the folders whose enabled jobs `start` loads
  };

  /// The settings for the user's own host.
  static Settings ofUser(const std::filesystem::path& program, const Roots& roots);
  /// The settings for the host of a machine with the folders of `Roots::below(root)`.
  static Settings below(const std::filesystem::path& program, const std::filesystem::path& root);

  /// The runner, which starts the program, must outlive this object.
  EmbeddedHost(Settings settings, ProcessRunner& runner);

  /// Creates the entry that starts the host at login, too, as does `load`.
  Result<void> start() override;
  Result<void> quit() override;
  Result<void> load(const std::filesystem::path& file) override;
  Result<void> loadTemporarily(const std::filesystem::path& file) override;
  /// Doesn't start a host if none has ever loaded a job.
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override;
  Result<Ended> waitForEnd(const std::string& label, std::chrono::seconds limit) override;
  Result<void> control(const std::filesystem::path& file, const std::string& label,
                       messages::Control::Order order) override;
  /// Doesn't start a host. Without one, the stored lines are returned, and a query that waits for others waits for the
  /// next host as well.
  Result<messages::LogLines> log(const messages::LogQuery& query, Cancellation& cancellation) override;

 private:
  template <typename Request>
  Result<typename Request::Answer> ask(const Request& request, std::chrono::seconds limit = longestAnswer);
  template <typename Request>
  Result<typename Request::Answer> askOne(const Request& request, std::chrono::seconds limit);
  Result<void> launch();
  bool hasNothingToUnload() const;
  Result<messages::LogLines> askForLog(const std::string& label, const LogRange& range, Cancellation& cancellation);
  messages::LogLines storedLog(const std::string& label, LogRange range) const;

  Settings m_settings;
  ProcessRunner& m_runner;
  HostClient m_client;
  HostAutostart m_autostart;
};

}  // namespace mirvel
