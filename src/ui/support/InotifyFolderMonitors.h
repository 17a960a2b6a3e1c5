#pragma once

#include "core/files/Inotify.h"
#include "ui/support/WatcherFolderMonitors.h"

namespace mirvel::ui {

/// Folder monitors of Linux, by inotify(7); where the user's share of that is used up, those of Qt serve instead.
class InotifyFolderMonitors final : public FolderMonitors {
 public:
  /// Returns a new instance, or none.
  using Opener = Inotify (*)();

  explicit InotifyFolderMonitors(Opener open = Inotify::open) : m_open(open) {}

  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override;

 private:
  Opener m_open;
  WatcherFolderMonitors m_fallback;
};

}  // namespace mirvel::ui
