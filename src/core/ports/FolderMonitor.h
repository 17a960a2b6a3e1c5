#pragma once

#include <filesystem>
#include <functional>
#include <memory>

namespace mirvel {

/// Watches one folder for as long as it lives.
class FolderMonitor {
 public:
  FolderMonitor() = default;
  virtual ~FolderMonitor() = default;
  FolderMonitor(const FolderMonitor&) = delete;
  FolderMonitor& operator=(const FolderMonitor&) = delete;
};

/// Makes folder monitors. For the main thread.
class FolderMonitors {
 public:
  FolderMonitors() = default;
  virtual ~FolderMonitors() = default;
  FolderMonitors(const FolderMonitors&) = delete;
  FolderMonitors& operator=(const FolderMonitors&) = delete;

  /// Calls `folderDidChange` on the main thread when an entry of the folder comes, goes or is renamed, when the content
  /// or the rights of a file directly in it change, and when the folder itself comes, goes or is replaced. The folder
  /// need not exist, nor its parents. Bursts aren't thinned out, and one change may be told more than once.
  virtual std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                               std::function<void()> folderDidChange) = 0;
};

}  // namespace mirvel
