#include "ui/notifications/NotificationsTabViewController.h"

#include <QTabBar>
#include <algorithm>

#include "core/notifications/NotificationTexts.h"
#include "core/session/Foundation.h"
#include "ui/notifications/NotificationsAllViewController.h"
#include "ui/notifications/NotificationsExcludeViewController.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

NotificationsTabViewController::NotificationsTabViewController(const SessionContext& session, Exceptions& exceptions) {
  const NotificationTexts texts(session.foundation.localize);
  auto* const all = new NotificationsAllViewController(session, exceptions);
  auto* const exclude = new NotificationsExcludeViewController(session, exceptions);
  addTab(all, qt(texts.all()));
  addTab(exclude, qt(texts.exclude()));
  m_tabs = {all, exclude};
  setAccessibleName(qt(texts.notifications()));
  setFocusPolicy(Qt::NoFocus);  // its bar gets the focus
  tabBar()->setAccessibleName(qt(texts.notifications()));
  Defaults& defaults = session.foundation.defaults;
  setCurrentIndex(static_cast<int>(std::clamp<std::int64_t>(defaults.notificationTab(), 0, count() - 1)));
  connect(this, &QTabWidget::currentChanged, this, [&defaults](int index) {
    (void)defaults.setNotificationTab(index);  // the store reports a failure
  });
}

void NotificationsTabViewController::reload() {
  for (NotificationsType* const tab : m_tabs) tab->reload();
}

}  // namespace mirvel::ui
