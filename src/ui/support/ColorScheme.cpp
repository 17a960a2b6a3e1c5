#include "ui/support/ColorScheme.h"

#include <QApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QStyle>
#include <QVariant>

namespace mirvel::ui {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String place("/org/freedesktop/portal/desktop");
constexpr QLatin1String settings("org.freedesktop.portal.Settings");
constexpr QLatin1String appearance("org.freedesktop.appearance");
constexpr QLatin1String colorScheme("color-scheme");
constexpr QLatin1String fusion("fusion");

/// Removes all nested QDBusVariants; portals differ in how many there are.
QVariant unwrapped(QVariant value) {
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

/// The scheme for a value of the setting; nullopt if the user has no preference.
std::optional<Scheme> preferred(const QVariant& preference) {
  switch (unwrapped(preference).toUInt()) {
    case 1:
      return Scheme::Dark;
    case 2:
      return Scheme::Light;
    default:
      return std::nullopt;
  }
}

}  // namespace

ColorScheme::ColorScheme(const QDBusConnection& bus) : m_bus(bus), m_platformStyle(QApplication::style()->name()) {}

void ColorScheme::follow() {
  if (!m_bus.isConnected()) return;
  if (!m_isFollowing) {
    // Accepts the signal from any sender: for a named one, Qt would look up the owner with a blocking call.
    m_bus.connect(QString(), place, settings, QStringLiteral("SettingChanged"), this,
                  SLOT(settingChanged(QDBusMessage)));
  }
  m_isFollowing = true;
  read();
}

void ColorScheme::force(Scheme scheme) {
  m_bus.disconnect(QString(), place, settings, QStringLiteral("SettingChanged"), this,
                   SLOT(settingChanged(QDBusMessage)));
  m_isFollowing = false;
  apply(scheme);
}

void ColorScheme::settingChanged(const QDBusMessage& signal) {
  const QVariantList values = signal.arguments();
  if (values.size() == 3 && values[0].toString() == appearance && values[1].toString() == colorScheme) take(values[2]);
}

void ColorScheme::read() {
  QDBusMessage call = QDBusMessage::createMethodCall(service, place, settings, QStringLiteral("Read"));
  call << QString(appearance) << QString(colorScheme);
  auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    watcher->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (reply.isValid()) take(QVariant::fromValue(reply.value()));
  });
}

void ColorScheme::take(const QVariant& preference) {
  if (m_isFollowing) apply(preferred(preference));
}

void ColorScheme::apply(std::optional<Scheme> scheme) {
  if (!scheme) return usePlatforms();
  if (schemeOf(QApplication::palette()) == *scheme) return;
  usePlatforms();
  if (schemeOf(QApplication::palette()) != *scheme) useOwn(*scheme);
}

void ColorScheme::useOwn(Scheme scheme) {
  m_isOwn = true;
  // Other styles draw some parts in colours of their own, which needn't match the palette.
  if (QApplication::style()->name() != fusion) QApplication::setStyle(fusion);
  QApplication::setPalette(paletteOf(scheme));
}

void ColorScheme::usePlatforms() {
  if (!m_isOwn) return;
  m_isOwn = false;
  QApplication::setPalette(QPalette());
  if (QApplication::style()->name() != m_platformStyle) QApplication::setStyle(m_platformStyle);
}

}  // namespace mirvel::ui
