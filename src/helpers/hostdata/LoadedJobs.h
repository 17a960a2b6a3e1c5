#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/base/Result.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The list of loaded job files, saved so that a host loads them again at its next start. For one thread.
class LoadedJobs {
 public:
  explicit LoadedJobs(std::filesystem::path file);

  /// The saved list; empty if there is no file. A damaged file, or one with other content, is renamed to a free name,
  /// and the error names both; later calls then succeed with an empty list. If the file can't be read for another
  /// reason, the call fails, the file is left alone, and `write` fails until a later call succeeds.
  Result<std::vector<std::filesystem::path>> read();
  /// Saves another list. The file is replaced atomically and flushed to the device: after a power failure it has all of
  /// the old list or all of the new one.
  Result<void> write(const std::vector<std::filesystem::path>& files);

 private:
  std::filesystem::path m_file;
  StoreTroubles m_troubles;
  Store m_store;
  std::optional<Error> m_damage;  ///< why the file was renamed by the last `read`
  bool m_mayWrite = true;         ///< false: overwriting would lose a list that couldn't be read
};

}  // namespace mirvel
