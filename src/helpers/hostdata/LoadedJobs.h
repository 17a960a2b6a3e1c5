#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The file in which a host notes which job files are loaded, so that it knows them again when it is started anew.
class LoadedJobs {
 public:
  /// Where a host with that folder has it.
  static std::filesystem::path fileIn(const std::filesystem::path& folder) { return folder / "loaded.plist"; }

  explicit LoadedJobs(std::filesystem::path file);

  /// None if there is no such file yet. A file that isn't one of these is moved aside under a name that was free, which
  /// the error tells. One that can't be read for another reason stays, is the error, and is never overwritten.
  Result<std::vector<std::filesystem::path>> read();
  /// The file holds all of the new list or all of the old one, whenever the power fails.
  Result<void> write(const std::vector<std::filesystem::path>& files);

 private:
  std::filesystem::path m_file;
  StoreTroubles m_troubles;
  Store m_store;
  std::optional<Error> m_damage;  ///< for which the file was moved aside
  bool m_mayWrite = true;         ///< what was loaded is known
};

}  // namespace mirvel
