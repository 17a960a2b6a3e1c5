#pragma once

#include <memory>

#include "core/base/Signal.h"
#include "core/notifications/AgentRegistration.h"
#include "core/notifications/Exceptions.h"
#include "core/notifications/NotificationTexts.h"
#include "core/ports/FolderMonitor.h"
#include "core/session/SessionContext.h"
#include "ui/support/PreferenceTabViewController.h"

namespace mirvel::ui {

class CheckBox;
class NotificationsTabViewController;

/// The pane of the preferences that switches the background agent, and says about which jobs it is to be quiet.
class PreferencesNotificationsViewController final : public PreferenceTabViewController {
  Q_OBJECT

 public:
  /// Loads the exceptions. Everything that the session refers to must outlive the pane.
  explicit PreferencesNotificationsViewController(const SessionContext& session);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void makeSwitches();
  void runAgent(bool isOn);
  void tellFailures(bool isOn);
  /// Shows the state that the platform and the file have now.
  void refresh();
  /// Only while the pane is visible: showing it refreshes it.
  void somethingChanged();

  const SessionContext m_session;
  const NotificationTexts m_texts;
  Exceptions m_exceptions;
  AgentRegistration m_registration;
  CheckBox* const m_runAgentButton;
  CheckBox* const m_tellFailuresButton;
  NotificationsTabViewController* m_tabViewController;
  std::unique_ptr<FolderMonitor> m_monitor;  ///< of the folder of the exceptions, which the agent changes too
  Subscription m_activated;
};

}  // namespace mirvel::ui
