#pragma once

#include "core/base/Result.h"
#include "core/ports/LoginItems.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// Whether the background agent runs: keeps the setting and what the platform starts at login in step. The platform
/// has the last word: what the user has switched off in the settings of the desktop, or by removing the entry, stays
/// off. For the main thread.
class AgentRegistration {
 public:
  /// `agentSwitch` is null if the platform can't switch the agent; then there is only the setting. All others must
  /// outlive this.
  AgentRegistration(Defaults& defaults, AgentSwitch* agentSwitch, MainQueue& queue)
      : m_defaults(defaults), m_switch(agentSwitch), m_queue(queue) {}

  /// The present state of the platform, to which the setting is corrected.
  bool isOn();
  /// Switches the agent, which starts or ends now. On failure, which is returned, the setting follows the state that
  /// the platform really has.
  Result<void> set(bool isOn);

  /// For the start of the program: adopts the state of the platform and renews the registration of an agent that is on,
  /// so that it runs and is that of this version. At the very first start, and at the first after `prepareUpdate`, the
  /// platform follows the setting instead.
  void restore();
  /// Before an update is installed: switches the agent off until the next start.
  void prepareUpdate();

 private:
  void renew();

  Defaults& m_defaults;
  AgentSwitch* m_switch;
  MainQueue& m_queue;
};

}  // namespace mirvel
