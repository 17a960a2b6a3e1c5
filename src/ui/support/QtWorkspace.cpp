#include "ui/support/QtWorkspace.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QMimeData>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>
#include <system_error>
#include <utility>

#include "core/process/UserEntry.h"
#include "ui/support/FileManager.h"
#include "ui/support/QtText.h"
#include "ui/support/ReadPicture.h"

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
