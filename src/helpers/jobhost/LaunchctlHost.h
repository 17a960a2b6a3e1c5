#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"

namespace mirvel {

/// launchd of macOS, controlled by launchctl(1); the log is read by log(1). It identifies jobs by label only. Errors
/// have the code `Io` and the message of the tool, which is killed if it doesn't end in time.
class LaunchctlHost final : public JobHost {
 public:
  struct Setup {
    ProcessRunner& runner;
    std::string domain;  ///< "system", or "gui/501" for a user who is logged in
    std::string launchctl = "/bin/launchctl";
    std::string log = "/usr/bin/log";
    std::function<void(std::chrono::milliseconds)> pause = {};  ///< replaces the sleep between two queries; for tests
  };

  /// The time between two queries while waiting for a job: launchctl has no operation that waits.
  static constexpr std::chrono::milliseconds pollingInterval{200};
  /// For a call of launchctl, which usually takes milliseconds.
  static constexpr std::chrono::seconds longestCall{60};
  /// For a query of the log, which can take minutes if it goes back for weeks.
  static constexpr std::chrono::seconds longestQuery{600};

  explicit LaunchctlHost(Setup setup);

  Result<void> load(const std::filesystem::path& file) override;
  Result<void> unload(const std::filesystem::path& file, const std::optional<std::string>& label) override;
  bool knowsFiles() const override { return false; }
  Result<void> unloadFrom(const std::filesystem::path& file, const std::optional<std::string>& label) override;
  Result<Ended> waitForEnd(const std::string& label, std::chrono::seconds limit) override;
  Result<void> control(const std::filesystem::path& file, const std::string& label,
                       messages::Control::Order order) override;
  Result<messages::LogLines> log(const messages::LogQuery& query, Cancellation& cancellation) override;

  /// The domain with the jobs of a user ID: "system" for root, else "gui/<user ID>".
  static std::string domainOf(unsigned user);

 private:
  Result<ProcessResult> launchctl(const std::vector<std::string>& arguments);
  std::string target(const std::string& label) const { return m_setup.domain + '/' + label; }
  /// The output of `launchctl print` for a job; none if it isn't loaded.
  Result<std::optional<std::string>> print(const std::string& label);
  /// False if the condition isn't met within the limit.
  Result<bool> waitUntil(const std::function<Result<bool>()>& isDone, std::chrono::milliseconds limit);

  Setup m_setup;
};

/// Parses the output of `log show --style syslog`. A line without a valid time is appended to the previous message;
/// those before the first message (the heading) are ignored.
std::vector<messages::LogLine> logLinesIn(const std::string& output);

}  // namespace mirvel
