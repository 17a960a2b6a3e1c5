#pragma once

#include <filesystem>
#include <vector>

#include "core/base/Result.h"
#include "core/files/Roots.h"

namespace mirvel {

/// Items of the machine that the helper may delete, but not write: startup items, each of which is a folder, and helper
/// tools.
struct RemovableItems {
  std::vector<std::filesystem::path> itemFolders = {};  ///< the folders that contain startup items
  std::vector<std::filesystem::path> toolFolders = {};  ///< the folders that contain helper tools

  static RemovableItems ofMachine(const Roots& roots);
  /// Compare text only: the path must be directly in one of the folders.
  bool isItem(const std::filesystem::path& path) const;
  bool isTool(const std::filesystem::path& path) const;
};

/// Removes a file, or a folder with its contents, from an open folder; only the last component of the path is used.
/// Links are removed instead of followed, also if one replaces a folder during the removal, so that a user who may
/// write to a startup item can't have root delete other files. Other file systems mounted there aren't entered. Stops
/// at the first failure, and at folders nested more than 16 levels deep, so that a crafted item can't exhaust the
/// descriptors.
Result<void> removeTree(int parent, const std::filesystem::path& path);

}  // namespace mirvel
