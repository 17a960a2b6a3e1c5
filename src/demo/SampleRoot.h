#pragma once

#include <filesystem>
#include <map>
#include <utility>

#include "core/base/Result.h"
#include "core/files/HostMark.h"
#include "core/files/Roots.h"

namespace mirvel::demo {

/// A folder that represents a whole machine: a home folder, the job folders of the user, of all users and of the
/// system, login items, startup items and privileged helper tools, all filled with samples. Nothing outside of it is
/// touched. The folder isn't deleted by this class; its creator may do so at any time.
class SampleRoot {
 public:
  /// Fills the folder, and creates it if necessary. Fails with `BadArgument` for a folder that isn't empty or whose
  /// path can't be written in a job file (control characters, invalid UTF-8), otherwise with the error of the file that
  /// couldn't be written; earlier files remain then.
  static Result<SampleRoot> create(const std::filesystem::path& folder);

  /// Makes the sample jobs look loaded: has this process play the hosts that don't run. To be called again when one has
  /// ended. Fails with the error of the system.
  Result<void> playHosts();

  Roots roots() const;
  const std::filesystem::path& folder() const { return m_folder; }

 private:
  explicit SampleRoot(std::filesystem::path folder) : m_folder(std::move(folder)) {}

  std::filesystem::path m_folder;
  std::map<std::filesystem::path, HostMark> m_hostMarks;  ///< by folder
};

}  // namespace mirvel::demo
