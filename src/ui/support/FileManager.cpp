#include "ui/support/FileManager.h"

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <utility>

#include "ui/support/QtText.h"

#ifdef Q_OS_LINUX
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#endif

namespace mirvel::ui {

QUrl fileUrl(const std::filesystem::path& path) {
  return QUrl::fromEncoded("file://" + QByteArray::fromStdString(path.native()).toPercentEncoding("/"));
}

#ifdef Q_OS_LINUX

// https://www.freedesktop.org/wiki/Specifications/file-manager-interface/
void showInFileManager(const std::filesystem::path& file, QObject& context, std::function<void()> otherwise) {
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return otherwise();  // the reply to a call would never arrive
  const QString service = QStringLiteral("org.freedesktop.FileManager1");
  QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/FileManager1"), service,
                                                     QStringLiteral("ShowItems"));
  call << QStringList{QString::fromLatin1(fileUrl(file).toEncoded())} << QString();
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), &context);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &context, [watcher, otherwise = std::move(otherwise)] {
    watcher->deleteLater();
    if (watcher->isError()) otherwise();
  });
}

#else

void showInFileManager(const std::filesystem::path& file, QObject& /*context*/, std::function<void()> otherwise) {
  const auto path = qtPath(file);
  const QString program = QStringLiteral("/usr/bin/open");
  if (!path || !QProcess::startDetached(program, {QStringLiteral("-R"), *path})) otherwise();
}

#endif

}  // namespace mirvel::ui
