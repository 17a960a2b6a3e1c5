#pragma once

#include <filesystem>
#include <vector>

#include "core/base/Result.h"
#include "core/files/Roots.h"

namespace mirvel {

/// What lies in folders of the machine that jobs aren't made in, and can be deleted there: startup items, each a folder
/// of its own, and helper tools.
struct RemovableItems {
  std::vector<std::filesystem::path> itemFolders = {};  ///< those in which startup items lie
  std::vector<std::filesystem::path> toolFolders = {};  ///< those in which helper tools lie

  static RemovableItems ofMachine(const Roots& roots);
  bool isItem(const std::filesystem::path& path) const;
  bool isTool(const std::filesystem::path& path) const;
};

/// Removes a folder with all that lies in it, as an entry of an open folder. It follows no links, and crosses into no
/// other file system. It stops at what it can't remove, and at folders nested too deeply for a startup item.
Result<void> removeTree(int parent, const std::filesystem::path& path);

}  // namespace mirvel
