#pragma once

#include <functional>
#include <string>

#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// launchd of macOS, by its tool (launchctl(1)) and that of the log (log(1)).
class LaunchctlHost final : public JobHost {
 public:
  struct Setup {
    ProcessRunner& runner;
    std::string domain;  ///< "system", or "gui/501" for a user who is logged in
    std::string launchctl = "/bin/launchctl";
    std::string log = "/usr/bin/log";
    std::function<void(std::chrono::milliseconds)> pause = {};  ///< lets time pass; none: the thread sleeps
  };

  /// While a job is waited for, launchd is asked so often.
  static constexpr std::chrono::milliseconds betweenLooks{200};
  /// A job that gets SIGTERM has 20 seconds by default before it is killed (launchd.plist(5), ExitTimeOut).
  static constexpr std::chrono::seconds longestStop{30};

  explicit LaunchctlHost(Setup setup);

  Result<void> load(const std::filesystem::path& file) override;
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override;
  bool knowsFiles() const override { return false; }
  Result<void> unloadFrom(const std::filesystem::path& file, const std::optional<std::string>& label) override;
  Result<bool> waitForEnd(const std::string& label, std::chrono::seconds limit) override;
  Result<std::vector<LogLine>> log(std::chrono::seconds period, const std::string& text) override;

  /// The domain of a user: root's is the machine.
  static std::string domainOf(unsigned user);

 private:
  std::string target(const std::string& label) const { return m_setup.domain + '/' + label; }
  /// What launchd says of a job; none if it isn't loaded.
  Result<std::optional<std::string>> print(const std::string& label);
  Result<bool> waitUntil(const std::function<Result<bool>()>& isDone, std::chrono::milliseconds limit);

  Setup m_setup;
};

/// The lines of `log show --style syslog`; a line without a time belongs to the message above it.
std::vector<JobHost::LogLine> logLinesIn(const std::string& output);

}  // namespace mirvel
