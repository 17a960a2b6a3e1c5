#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/messages/JobReport.h"
#include "core/ports/MainQueue.h"
#include "core/ports/RunSource.h"

namespace mirvel {

struct Platform;

/// The jobs in the output of `launchctl list`, or in the table of services of `launchctl print` for a domain: in each
/// line the process ID ("-" or 0 if it doesn't run), how the last run ended ("-" if there was none, negative for a
/// signal), and the label. Other lines are ignored. The reports are partial; `processStart` is 0.
///
///     "312\t0\torg.example.a\n-\t-15\torg.example.b\n" → a runs as process 312; b was ended by signal 15
std::vector<JobReport> launchctlReports(std::string_view text);

/// Asks launchctl(1) which jobs are loaded and how they ended, every few seconds while the window is visible: launchd
/// sends no events. Neither needs a password. For the main thread.
class LaunchctlReports final : public RunSource {
 public:
  static constexpr double secondsBetweenQueries = 3;

  /// `launchctl` is the path of the tool; the jobs are those of root and of the user with this ID. The platform must
  /// outlive the source; the tool runs on its file queue.
  LaunchctlReports(std::string launchctl, unsigned user, const Platform& platform);

  void begin(Receiver receiver) override { m_receiver = std::move(receiver); }
  void setVisible(bool isVisible) override;

 private:
  struct Answer {
    std::vector<JobReport> reports = {};
    std::string problem = {};  ///< why there is no answer
  };
  using Known = std::map<std::string, JobReport>;  ///< by label

  void query();
  void answered(const std::array<Answer, 2>& answers);
  void deliver(RunDomain domain, const Answer& answer);

  const std::string m_launchctl;
  const std::array<std::string, 2> m_domains;  ///< launchctl's names, by `RunDomain`
  const Platform& m_platform;
  Receiver m_receiver;
  std::array<Known, 2> m_known;
  std::array<std::optional<std::string>, 2> m_delivered;  ///< the last problem; none: nothing was delivered yet
  bool m_isVisible = false;
  bool m_isQuerying = false;  ///< a query runs, or the pause after one
  Delay m_delay;
};

}  // namespace mirvel
