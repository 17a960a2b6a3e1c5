#include "ui/support/QtWorkspace.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QMimeData>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>
#include <system_error>
#include <utility>

#include "core/process/UserEntry.h"
#include "ui/support/QtText.h"
#include "ui/support/ReadPicture.h"

#ifdef Q_OS_LINUX
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#endif

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

#ifdef Q_OS_MACOS
constexpr char applicationExtension[] = ".app";
#else
constexpr char applicationExtension[] = ".desktop";
#endif

bool isThere(const fs::path& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

std::vector<fs::path> foldersIn(const fs::path& folder) {
  std::vector<fs::path> folders;
  std::error_code failure;
  for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
       entry.increment(failure)) {
    std::error_code unknown;
    if (entry->is_directory(unknown)) folders.push_back(entry->path());
  }
  std::sort(folders.begin(), folders.end());
  return folders;
}

/// The file URL of a path, byte for byte, even if the path isn't valid UTF-8.
QUrl fileUrl(const fs::path& path) {
  return QUrl::fromEncoded("file://" + QByteArray::fromStdString(path.native()).toPercentEncoding("/"));
}

/// Asks the desktop's file manager to show a file and select it. Doesn't wait. Calls `otherwise` if that fails, now or
/// later, but not after `context` has been destroyed.
#ifdef Q_OS_LINUX
// https://www.freedesktop.org/wiki/Specifications/file-manager-interface/
void showInFileManager(const fs::path& file, QObject& context, std::function<void()> otherwise) {
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

void showInFileManager(const fs::path& file, QObject& /*context*/, std::function<void()> otherwise) {
  const auto path = qtPath(file);
  const QString program = QStringLiteral("/usr/bin/open");
  if (!path || !QProcess::startDetached(program, {QStringLiteral("-R"), *path})) otherwise();
}

#endif

}  // namespace

QtWorkspace::QtWorkspace(std::vector<fs::path> applicationFolders)
    : m_applicationFolders(std::move(applicationFolders)) {}

std::vector<fs::path> QtWorkspace::platformApplicationFolders() {
  std::vector<fs::path> folders;
  for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
    folders.push_back(path(folder));
  }
#ifdef Q_OS_MACOS
  folders.emplace_back("/System/Applications");
#endif
  return folders;
}

bool QtWorkspace::open(const URL& url) {
  return url.isFile() && isThere(url.path()) && QDesktopServices::openUrl(fileUrl(url.path()));
}

bool QtWorkspace::openAddress(const std::string& address) {
  const QUrl url(qt(address), QUrl::StrictMode);
  return url.isValid() && !url.scheme().isEmpty() && QDesktopServices::openUrl(url);
}

bool QtWorkspace::reveal(const URL& file) {
  std::error_code failure;
  if (!file.isFile() || !fs::exists(fs::symlink_status(file.path(), failure))) return false;
  showInFileManager(file.path(), m_context,
                    [this, folder = file.path().parent_path()] { (void)open(URL::file(folder)); });
  return true;
}

std::optional<std::string> QtWorkspace::fullPathForApplication(const std::string& name) {
  if (name.empty() || name.find('/') != std::string::npos) return std::nullopt;
  const std::string file = name + applicationExtension;
  for (const fs::path& folder : m_applicationFolders) {
    if (isThere(folder / file)) return folder / file;
    for (const fs::path& inner : foldersIn(folder)) {
      if (isThere(inner / file)) return inner / file;
    }
  }
  return std::nullopt;
}

std::string QtWorkspace::displayName(const fs::path& path) {
  const fs::path name = path.has_filename() ? path.filename() : path.parent_path().filename();
  return utf8(displayText(name.empty() ? path : name));
}

std::optional<Image> QtWorkspace::image(const fs::path& file) {
  if (!readPicture(file)) return std::nullopt;
  return Image::file(file);
}

std::string QtWorkspace::fullUserName() {
  return m_fullUserName ? *m_fullUserName : mirvel::fullUserName();
}

void QtWorkspace::copy(const std::string& text, const std::optional<URL>& file) {
  auto* data = new QMimeData;
  data->setText(qt(text));
  if (file) data->setUrls({fileUrl(file->path())});
  QApplication::clipboard()->setMimeData(data);
}

void QtWorkspace::beep() {
  QApplication::beep();
}

}  // namespace mirvel::ui
