#include "core/notifications/AgentRegistration.h"

#include "core/base/Const.h"

namespace mirvel {

bool AgentRegistration::isOn() {
  if (!m_switch || m_defaults.firstMirvelLaunch()) return m_defaults.runAgent();
  const bool isOn = m_switch->isEnabled(Const::agent);
  if (isOn != m_defaults.runAgent()) (void)m_defaults.setRunAgent(isOn);  // the store reports a failure
  return isOn;
}

Result<void> AgentRegistration::set(bool isOn) {
  if (auto set = m_defaults.setRunAgent(isOn); !set) return set;
  if (!m_switch) return {};
  renew();
  auto switched = m_switch->setEnabled(Const::agent, isOn);
  if (!switched) (void)this->isOn();  // corrects the setting
  return switched;
}

/// Drops the registration once, so that the platform makes a new one.
void AgentRegistration::renew() {
  if (!m_defaults.firstMirvelLaunch()) return;
  (void)m_switch->setEnabled(Const::agent, false);  // there may be none
  (void)m_defaults.setFirstMirvelLaunch(false);     // at worst, the next start renews it once more
  m_queue.sleep(0.1);
}

void AgentRegistration::restore() {
  if (!m_switch) return;
  const bool isFirst = m_defaults.firstMirvelLaunch();
  renew();
  const bool isWanted = isFirst ? m_defaults.runAgent() : isOn();
  // Also while it is off at a first start, because an earlier version may have left something. A failure shows as the
  // state in the preferences.
  if (isWanted || isFirst) (void)m_switch->setEnabled(Const::agent, isWanted);
}

void AgentRegistration::prepareUpdate() {
  if (!m_switch) return;
  renew();
  (void)m_switch->setEnabled(Const::agent, false);  // the update replaces it in any case
  (void)m_defaults.setFirstMirvelLaunch(true);      // at worst, the agent stays off
}

}  // namespace mirvel
