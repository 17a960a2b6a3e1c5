#pragma once

#include "core/ports/FolderMonitor.h"

namespace mirvel::ui {

/// Implements folder monitors with QFileSystemWatcher, which works on every platform. In a folder with more than 500
/// files, changes of file contents may be missed, since every file needs a watch of its own.
class WatcherFolderMonitors final : public FolderMonitors {
 public:
  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override;
};

}  // namespace mirvel::ui
