#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <optional>

#include "ui/support/Palettes.h"

namespace mirvel::ui {

/// Gives the application light or dark colours as the desktop has them set, where the platform's theme doesn't do so
/// by itself.
class ColorScheme final : public QObject {
  Q_OBJECT

 public:
  explicit ColorScheme(const QDBusConnection& bus = QDBusConnection::sessionBus());

  /// Asks the desktop's settings portal, and does so again whenever they change. Returns at once; without a portal
  /// nothing happens. (https://flatpak.github.io/xdg-desktop-portal/, interface org.freedesktop.portal.Settings)
  void follow();
  /// Takes this scheme, whatever the desktop has, until `follow` is called.
  void force(Scheme scheme);

 private:
  // As a message, since Qt 6.4 refuses to connect a slot that takes a QDBusVariant before it has met one.
  Q_SLOT void settingChanged(const QDBusMessage& signal);
  void read();
  void take(const QVariant& preference);
  void apply(std::optional<Scheme> scheme);
  void useOwn(Scheme scheme);
  void usePlatforms();

  QDBusConnection m_bus;
  bool m_isFollowing = false;
  QString m_platformStyle;
  bool m_isOwn = false;  ///< the palette is ours, not the platform's
};

}  // namespace mirvel::ui
