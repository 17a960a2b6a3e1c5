#pragma once

#include <memory>

#include "core/ports/FolderMonitor.h"

#ifdef __linux__
#include "core/files/Inotify.h"
#endif

namespace mirvel::ui {

/// Implements folder monitors with QFileSystemWatcher, which works on every platform. In a folder with more than 500
/// files, changes of file contents may be missed, since every file needs a watch of its own.
class WatcherFolderMonitors final : public FolderMonitors {
 public:
  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override;
};

#ifdef __linux__

/// Implements folder monitors with inotify(7). Once the user's limit of inotify instances is reached, further folders
/// are monitored by `WatcherFolderMonitors`.
class InotifyFolderMonitors final : public FolderMonitors {
 public:
  /// Returns a new instance, or an invalid one if the limit is reached.
  using Opener = Inotify (*)();

  explicit InotifyFolderMonitors(Opener open = Inotify::open) : m_open(open) {}

  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override;

 private:
  Opener m_open;
  WatcherFolderMonitors m_fallback;
};

#endif

/// The implementation that detects most changes on this platform.
inline std::unique_ptr<FolderMonitors> platformFolderMonitors() {
#ifdef __linux__
  return std::make_unique<InotifyFolderMonitors>();
#else
  return std::make_unique<WatcherFolderMonitors>();
#endif
}

}  // namespace mirvel::ui
