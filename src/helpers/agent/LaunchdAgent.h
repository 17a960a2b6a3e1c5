#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "core/files/Roots.h"
#include "core/ports/LoginItems.h"
#include "core/process/ProcessRunner.h"

namespace mirvel::agent {

/// Switches the agent by a job of launchd in the user's agents folder.
class LaunchdAgent final : public AgentSwitch {
 public:
  struct Setup {
    const Roots& roots;
    ProcessRunner& runner;
    std::string launchctl;          ///< the path of the tool
    uid_t user;                     ///< in whose graphical session the agent runs
    std::filesystem::path agent;    ///< `mirvel-agent`
    std::filesystem::path program;  ///< `mirvel`, which the agent opens
  };

  /// Everything referred to must outlive this.
  explicit LaunchdAgent(const Setup& setup) : m_setup(setup) {}

  /// False also if the job is disabled in launchd's own records, as by System Settings.
  bool isEnabled(std::string_view identifier) override;
  Result<void> setEnabled(std::string_view identifier, bool isEnabled) override;

 private:
  std::filesystem::path fileOf(std::string_view identifier) const;
  std::string domain() const { return "gui/" + std::to_string(m_setup.user); }
  Result<ProcessResult> launchctl(const std::vector<std::string>& arguments) const;
  Result<void> write(std::string_view identifier) const;
  Result<void> remove(std::string_view identifier) const;

  const Setup m_setup;
};

}  // namespace mirvel::agent
