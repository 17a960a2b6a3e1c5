#pragma once

namespace mirvel::ui {

/// A tab of the notification preferences.
class NotificationsType {
 public:
  NotificationsType() = default;
  virtual ~NotificationsType() = default;
  NotificationsType(const NotificationsType&) = delete;
  NotificationsType& operator=(const NotificationsType&) = delete;

  /// Shows what the exceptions, the settings and the catalogue have now.
  virtual void reload() = 0;
};

}  // namespace mirvel::ui
