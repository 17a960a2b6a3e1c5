#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <optional>

#include "ui/support/Palettes.h"

namespace mirvel::ui {

/// Applies the desktop's light or dark scheme to the application where the platform theme doesn't.
class ColorScheme final : public QObject {
  Q_OBJECT

 public:
  explicit ColorScheme(const QDBusConnection& bus = QDBusConnection::sessionBus());

  /// Reads the setting from the desktop's settings portal, and again whenever it changes. Returns immediately; without
  /// a portal nothing happens. (https://flatpak.github.io/xdg-desktop-portal/, interface
  /// org.freedesktop.portal.Settings)
  void follow();
  /// Applies this scheme regardless of the desktop's, until `follow` is called.
  void force(Scheme scheme);

 private:
  // Receives the whole message, because Qt 6.4 refuses to connect a slot with a QDBusVariant parameter until the type
  // has been used.
  Q_SLOT void settingChanged(const QDBusMessage& signal);
  void read();
  void take(const QVariant& preference);
  void apply(std::optional<Scheme> scheme);
  void useOwn(Scheme scheme);
  void usePlatforms();

  QDBusConnection m_bus;
  bool m_isFollowing = false;
  QString m_platformStyle;
  bool m_isOwn = false;  ///< the palette was set here, not by the platform
};

}  // namespace mirvel::ui
