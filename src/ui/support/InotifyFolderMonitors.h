#pragma once

#include "core/process/FileDescriptor.h"
#include "ui/support/WatcherFolderMonitors.h"

namespace mirvel::ui {

/// Folder monitors of Linux, by inotify(7); where the user's share of that is used up, those of Qt serve instead.
class InotifyFolderMonitors final : public FolderMonitors {
 public:
  /// Gives a new inotify instance, non-blocking, or none.
  using Opener = FileDescriptor (*)();

  static FileDescriptor openInotify();
  explicit InotifyFolderMonitors(Opener open = openInotify) : m_open(open) {}

  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override;

 private:
  Opener m_open;
  WatcherFolderMonitors m_fallback;
};

}  // namespace mirvel::ui
