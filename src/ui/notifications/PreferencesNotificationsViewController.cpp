#include "ui/notifications/PreferencesNotificationsViewController.h"

#include <QVBoxLayout>

#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "core/session/Platform.h"
#include "ui/notifications/NotificationsTabViewController.h"
#include "ui/support/Controls.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

PreferencesNotificationsViewController::PreferencesNotificationsViewController(const SessionContext& session)
    : PreferenceTabViewController(qt(NotificationTexts(session.foundation.localize).notifications()),
                                  "mirvel-notifications", "preferencesnotifications"),
      m_session(session),
      m_texts(session.foundation.localize),
      m_exceptions(session.foundation.roots.applicationSupport, &session.foundation.storeTroubles),
      m_registration(session.foundation.defaults, session.platform.agentSwitch, session.platform.mainQueue),
      m_runAgentButton(new CheckBox),
      m_tellFailuresButton(new CheckBox),
      m_tabViewController(nullptr) {
  const bool hasDefault = m_exceptions.addMissingPrefixes();
  m_tabViewController = new NotificationsTabViewController(session, m_exceptions);
  new QVBoxLayout(this);
  makeSwitches();
  layout()->addWidget(m_tabViewController);
  m_monitor = session.platform.folderMonitors.watch(session.foundation.roots.applicationSupport,
                                                    [this] { somethingChanged(); });
  m_activated = session.notifications.appStatusChanged.subscribe([this] { somethingChanged(); });
  refresh();
  if (hasDefault) session.notifications.updateNotifications.post();
}

void PreferencesNotificationsViewController::makeSwitches() {
  const bool isAvailable = m_session.platform.agentSwitch != nullptr;
  m_runAgentButton->setText(literalTitle(qt(m_texts.runAgent())));
  m_runAgentButton->setObjectName(QStringLiteral("runAgentButton"));
  m_runAgentButton->setAccessibleName(qt(m_texts.runAgentDescription()));
  m_runAgentButton->setEnabled(isAvailable);
  m_tellFailuresButton->setText(literalTitle(qt(m_texts.tellFailures())));
  m_tellFailuresButton->setObjectName(QStringLiteral("tellFailuresButton"));
  auto* const explanation = new SecondaryLabel(qt(isAvailable ? m_texts.explanation() : m_texts.unavailable()));
  explanation->setWordWrap(true);
  explanation->setObjectName(QStringLiteral("runAgentTextField"));
  for (QWidget* const widget : std::initializer_list<QWidget*>{m_runAgentButton, explanation, m_tellFailuresButton}) {
    layout()->addWidget(widget);
  }
  connect(m_runAgentButton, &QAbstractButton::clicked, this, [this](bool isOn) { runAgent(isOn); });
  connect(m_tellFailuresButton, &QAbstractButton::clicked, this, [this](bool isOn) { tellFailures(isOn); });
}

void PreferencesNotificationsViewController::showEvent(QShowEvent* event) {
  refresh();
  PreferenceTabViewController::showEvent(event);
}

void PreferencesNotificationsViewController::somethingChanged() {
  if (isVisible()) refresh();
}

void PreferencesNotificationsViewController::runAgent(bool isOn) {
  const auto switched = m_registration.set(isOn);
  refresh();
  if (!switched) m_session.platform.interface.error(m_texts.cantSwitch(), switched.error().text());
}

void PreferencesNotificationsViewController::tellFailures(bool isOn) {
  (void)m_exceptions.setTellsFailures(isOn);  // the store reports a failure
  refresh();
}

void PreferencesNotificationsViewController::refresh() {
  const bool isOn = m_registration.isOn();
  setCheckedQuietly(*m_runAgentButton, isOn);
  setCheckedQuietly(*m_tellFailuresButton, m_exceptions.tellsFailures());
  m_tellFailuresButton->setEnabled(isOn);
  m_tabViewController->reload();
}

}  // namespace mirvel::ui
