#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/process/ProcessRunner.h"
#include "helpers/hostdata/HostClient.h"
#include "helpers/hostdata/HostPlaces.h"
#include "helpers/jobhost/HostAutostart.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// The host that comes with the program, for machines with neither launchd nor systemd: `mirvel-host`, which is started
/// when it is asked for something and doesn't run.
class EmbeddedHost : public JobHost {
 public:
  struct Settings {
    HostPlaces places;
    std::filesystem::path program;                       ///< `mirvel-host`
    std::vector<std::string> arguments = {};             ///< for it to find the same places, such as `--root DIR`
    std::filesystem::path autostart = {};                ///< folder for the entry that starts it at login; empty: none
    std::vector<std::filesystem::path> jobFolders = {};  ///< of the jobs that run while the user is logged in
  };

  /// The user's own host, which is started at login from its first load on.
  static Settings ofUser(const std::filesystem::path& program, const Roots& roots);
  /// That of a machine whose folders are those of `Roots::below(root)`.
  static Settings below(const std::filesystem::path& program, const std::filesystem::path& root);

  /// The runner must outlive it.
  EmbeddedHost(Settings settings, ProcessRunner& runner);

  Result<void> start() override;
  Result<void> load(const std::filesystem::path& file) override;
  Result<void> loadTemporarily(const std::filesystem::path& file) override;
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override;
  Result<bool> waitForEnd(const std::string& label, std::chrono::seconds limit) override;
  Result<std::vector<LogLine>> log(std::chrono::seconds period, const std::string& text) override;

  /// Stops the host with all its jobs; what is loaded is loaded again at its next start. None running is no error.
  Result<void> quit();

 private:
  template <typename Request>
  Result<typename Request::Answer> ask(const Request& request, std::chrono::seconds limit = longestAnswer);
  template <typename Request>
  Result<typename Request::Answer> askOne(const Request& request, std::chrono::seconds limit);
  Result<void> launch();
  bool hasNothingToUnload() const;

  Settings m_settings;
  ProcessRunner& m_runner;
  HostClient m_client;
  HostAutostart m_autostart;
};

}  // namespace mirvel
