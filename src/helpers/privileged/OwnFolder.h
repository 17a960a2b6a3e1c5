#pragma once

#include <filesystem>

#include "core/base/Result.h"

namespace mirvel {

/// A fresh folder of this process's user alone; removed at its end, with what lies in it.
class OwnFolder {
 public:
  /// `parent` is the folder for such things, such as /run.
  static Result<OwnFolder> make(const std::filesystem::path& parent);
  OwnFolder(OwnFolder&& other) noexcept;
  OwnFolder& operator=(OwnFolder&&) = delete;
  ~OwnFolder();

  const std::filesystem::path& path() const { return m_path; }

 private:
  explicit OwnFolder(std::filesystem::path path) : m_path(std::move(path)) {}

  std::filesystem::path m_path;  ///< empty once it has been moved away
};

}  // namespace mirvel
