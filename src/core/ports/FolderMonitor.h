#pragma once

#include <filesystem>
#include <functional>
#include <memory>

namespace mirvel {

/// Watches one folder until it is destroyed.
class FolderMonitor {
 public:
  FolderMonitor() = default;
  virtual ~FolderMonitor() = default;
  FolderMonitor(const FolderMonitor&) = delete;
  FolderMonitor& operator=(const FolderMonitor&) = delete;
};

/// Creates folder monitors. For the main thread.
class FolderMonitors {
 public:
  FolderMonitors() = default;
  virtual ~FolderMonitors() = default;
  FolderMonitors(const FolderMonitors&) = delete;
  FolderMonitors& operator=(const FolderMonitors&) = delete;

  /// Starts watching. `folderDidChange` is called on the main thread:
  /// - when an entry of the folder is created, deleted or renamed;
  /// - when the content or the permissions of a file directly in it change;
  /// - when the folder itself is created, deleted or replaced.
  /// Neither the folder nor its parents have to exist. Bursts aren't coalesced, and one change can be reported several
  /// times. No calls are made after the monitor has been destroyed. Never null.
  virtual std::unique_ptr<FolderMonitor> watch(const std::filesystem::path& folder,
                                               std::function<void()> folderDidChange) = 0;
};

}  // namespace mirvel
