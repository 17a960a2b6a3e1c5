#pragma once

#include <filesystem>
#include <string_view>

#include "core/files/Roots.h"
#include "core/ports/LoginItems.h"
#include "core/process/ProcessRunner.h"
#include "helpers/jobhost/AutostartEntry.h"

namespace mirvel::agent {

/// Switches the agent by an autostart entry of the desktop, and starts and ends it.
class AutostartAgent final : public AgentSwitch {
 public:
  struct Setup {
    const Roots& roots;
    ProcessRunner& runner;
    std::filesystem::path agent;    ///< `mirvel-agent`
    std::filesystem::path program;  ///< `mirvel`, which the agent opens
    std::filesystem::path machine;  ///< of `Roots::below`; empty: this machine
  };

  /// Everything referred to must outlive this.
  explicit AutostartAgent(const Setup& setup);

  bool isEnabled(std::string_view identifier) override;
  Result<void> setEnabled(std::string_view identifier, bool isEnabled) override;

 private:
  Result<void> start() const;
  void end() const;

  const Setup m_setup;
  const AutostartEntry m_entry;
};

}  // namespace mirvel::agent
