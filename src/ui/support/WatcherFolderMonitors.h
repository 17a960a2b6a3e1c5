#pragma once

#include "core/ports/FolderMonitor.h"

namespace mirvel::ui {

/// Folder monitors by what Qt offers on every platform. Of very full folders a change in place may be missed, since
/// every file has to be watched for it.
class WatcherFolderMonitors final : public FolderMonitors {
 public:
  std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                       std::function<void()> folderDidChange) override;
};

}  // namespace mirvel::ui
