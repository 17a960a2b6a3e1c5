#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/JobHost.h"
#include "helpers/jobhost/OutputTails.h"

namespace mirvel {

/// launchd of macOS, controlled by launchctl(1); the log is read by log(1), and from the files to which the job writes.
/// It identifies jobs by label only. Errors have the code `Io` and the message of the tool, which is killed if it
/// doesn't end in time.
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
  /// The time between two queries of the log while waiting for new lines. Each costs much of the processor's time.
  static constexpr std::chrono::milliseconds logInterval{3000};
  /// After SIGTERM, before a job that is to be stopped is killed, unless it has another `ExitTimeOut`.
  static constexpr std::chrono::seconds usualExitTimeOut{20};

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
  Result<void> act(const std::vector<std::string>& arguments, const std::string& action,
                   const std::filesystem::path& file);
  Result<void> stop(const std::filesystem::path& file, const std::string& label, const std::string& printed);
  Result<bool> waitForProcess(const std::string& label, std::int64_t process, std::chrono::seconds limit);
  Result<messages::LogLines> look(const messages::LogQuery& query, OutputTails::State& state,
                                  Cancellation& cancellation);
  Result<messages::LogLines> show(const messages::LogQuery& query, std::int64_t after, Cancellation& cancellation);
  OutputTails::State stateFor(const messages::LogQuery& query);
  void remember(const messages::LogQuery& query, messages::LogLines& answer, OutputTails::State state);
  /// The output of `launchctl print` for a job; none if it isn't loaded.
  Result<std::optional<std::string>> print(const std::string& label);
  /// False if the condition isn't met within the limit.
  Result<bool> waitUntil(const std::function<Result<bool>()>& isDone, std::chrono::milliseconds limit);

  Setup m_setup;
  std::mutex m_tailsLock;
  OutputTails m_tails;
};

/// How a job has ended according to the output of `launchctl print`; none if it hasn't ended yet. launchd reports a
/// program that it couldn't start with the exit code 78, as a program may exit itself; only its state tells them apart.
std::optional<RunEnd> endIn(std::string_view printed);

/// Reads the output of `log show --style syslog`, in pieces of any size. A line that begins with a time begins an
/// entry, and other lines continue it; lines before the first entry (the heading) are ignored. Keeps the entries that
/// contain the label as a whole: "org.a" isn't in "org.a.b". Of those, the newest are kept, up to `mostLines` and
/// `mostBytes`.
///
/// The number of a line is its time in microseconds, times 1 000, plus its position among the lines of that time. So it
/// is the same in each query, but the numbers have gaps where no line was dropped.
class LogShowReader {
 public:
  static constexpr std::size_t mostLines = 250'000;
  static constexpr std::size_t mostBytes = std::size_t{32} << 20;
  static constexpr std::size_t longestMessage = std::size_t{64} << 10;
  static constexpr std::int64_t numbersPerMicrosecond = 1000;

  /// Only lines with a larger number than `after` are kept.
  LogShowReader(std::string label, std::int64_t after) : m_label(std::move(label)), m_after(after) {}

  /// The number of the first line of a time, in seconds since 1970.
  static std::int64_t numberAt(double seconds);

  void read(std::string_view piece);
  /// The entries until now, at the end of the output.
  messages::LogLines finish() &&;

 private:
  void readLine(std::string_view line);
  void endEntry();

  const std::string m_label;
  const std::int64_t m_after;
  std::string m_rest;                        ///< the beginning of a line
  std::optional<messages::LogLine> m_entry;  ///< the one that is being read
  std::deque<messages::LogLine> m_lines;
  std::int64_t m_lastNumber = 0;
  std::size_t m_bytes = 0;
  std::int64_t m_dropped = 0;
};

/// Whether a text contains the label, neither preceded nor followed by a character that could belong to a longer label.
bool containsLabel(std::string_view text, std::string_view label);

}  // namespace mirvel
