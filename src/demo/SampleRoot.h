#pragma once

#include <filesystem>
#include <utility>

#include "core/base/Result.h"
#include "core/files/Roots.h"

namespace mirvel::demo {

/// A folder that stands for a whole machine: a home folder, the job folders of the user, of everyone and of the system,
/// login items, startup items and privileged helper tools, all filled with samples. Nothing outside of it is touched,
/// and it may be thrown away at any time; that is left to whoever chose the folder.
class SampleRoot {
 public:
  /// Fills the folder, and makes it if it isn't there. Code `BadArgument` for a folder that isn't empty or that has a
  /// name which can't be told in a job file (control characters, bytes that aren't UTF-8); else the error of the file
  /// that couldn't be written, with what was written before it left as it is.
  static Result<SampleRoot> create(const std::filesystem::path& folder);

  Roots roots() const;
  const std::filesystem::path& folder() const { return m_folder; }

 private:
  explicit SampleRoot(std::filesystem::path folder) : m_folder(std::move(folder)) {}

  std::filesystem::path m_folder;
};

}  // namespace mirvel::demo
