#include "ui/support/PlatformFolderMonitors.h"

#include <sys/stat.h>

#include <QFileSystemWatcher>
#include <QSet>
#include <QStringList>
#include <QTimer>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "ui/support/PathWalk.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostFiles = 500;  // each may cost a file descriptor

/// Watches a folder, its files, and each folder along its path. Qt reports that a folder has changed but not which
/// entry, so a change along the path counts only if the path leads elsewhere than before.
class WatcherFolderMonitor final : public FolderMonitor {
 public:
  WatcherFolderMonitor(fs::path folder, std::function<void()> folderDidChange)
      : m_folder(std::move(folder)), m_folderDidChange(std::move(folderDidChange)) {
    m_soon.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, &m_soon, [this] { look(); });
    const auto changed = [this](const QString& path) { pathDidChange(path); };
    QObject::connect(&m_watcher, &QFileSystemWatcher::directoryChanged, &m_soon, changed);
    QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_soon, changed);
    m_entries = arm();
  }

 private:
  /// The entries along the path, by device and inode number.
  using PathEntries = std::vector<std::pair<dev_t, ino_t>>;

  void pathDidChange(const QString& path);
  void look();
  PathEntries arm();
  QStringList files(const fs::path& folder) const;
  void watchOnly(const QStringList& paths);

  fs::path m_folder;
  std::function<void()> m_folderDidChange;
  QFileSystemWatcher m_watcher;
  QTimer m_soon;  // coalesces a batch of notifications
  PathEntries m_entries;
  QString m_watchedFolder;  // resolved; empty if it doesn't exist
  bool m_isOfFolder = false;
};

void WatcherFolderMonitor::pathDidChange(const QString& path) {
  // A path that has been replaced would remain in the watcher's list without being watched.
  m_watcher.removePath(path);
  if (!m_watchedFolder.isEmpty() && path.startsWith(m_watchedFolder)) m_isOfFolder = true;
  if (!m_soon.isActive()) m_soon.start(0);
}

void WatcherFolderMonitor::look() {
  PathEntries entries = arm();
  const bool isNews = std::exchange(m_isOfFolder, false) || entries != m_entries;
  m_entries = std::move(entries);
  if (!isNews) return;
  const auto folderDidChange = m_folderDidChange;  // a copy, since the call may destroy this monitor
  folderDidChange();
}

/// Watches everything that exists now, and returns the entries along the path.
WatcherFolderMonitor::PathEntries WatcherFolderMonitor::arm() {
  PathEntries entries;
  QStringList paths;
  const auto visit = [&](const fs::path& folder, const std::string& name) {
    if (const auto text = qtPath(folder)) paths << *text;
    struct stat status {};
    if (::lstat((folder / name).c_str(), &status) == 0) entries.emplace_back(status.st_dev, status.st_ino);
  };
  const auto folder = walkTo(m_folder, visit);
  const auto text = folder ? qtPath(*folder) : std::nullopt;
  m_watchedFolder = text.value_or(QString());
  if (text) paths << *text << files(*folder);
  watchOnly(paths);
  return entries;
}

QStringList WatcherFolderMonitor::files(const fs::path& folder) const {
  QStringList result;
  std::error_code failure;
  std::size_t count = 0;
  for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
       entry.increment(failure)) {
    if (entry->is_directory(failure)) continue;
    if (++count > mostFiles) break;
    if (const auto text = qtPath(entry->path())) result << *text;
  }
  return result;
}

void WatcherFolderMonitor::watchOnly(const QStringList& paths) {
  const QSet<QString> wanted(paths.begin(), paths.end());
  const QStringList listed = m_watcher.files() + m_watcher.directories();
  const QSet<QString> present(listed.begin(), listed.end());
  const QStringList gone = (present - wanted).values();
  const QStringList added = (wanted - present).values();
  if (!gone.isEmpty()) (void)m_watcher.removePaths(gone);
  if (!added.isEmpty())
    (void)m_watcher.addPaths(added);  // if a path has just been removed, its folder reports a change
}

}  // namespace

std::unique_ptr<FolderMonitor> WatcherFolderMonitors::watch(const fs::path& folder,
                                                            std::function<void()> folderDidChange) {
  return std::make_unique<WatcherFolderMonitor>(folder, std::move(folderDidChange));
}

}  // namespace mirvel::ui
