#pragma once

#include <QTabWidget>
#include <vector>

#include "core/notifications/Exceptions.h"
#include "core/session/SessionContext.h"
#include "ui/notifications/NotificationsType.h"

namespace mirvel::ui {

/// The tabs of the notification preferences. The selected one is remembered.
class NotificationsTabViewController final : public QTabWidget {
  Q_OBJECT

 public:
  /// Everything that the arguments refer to must outlive the tabs.
  NotificationsTabViewController(const SessionContext& session, Exceptions& exceptions);

  /// Reloads all tabs.
  void reload();

 private:
  std::vector<NotificationsType*> m_tabs;
};

}  // namespace mirvel::ui
