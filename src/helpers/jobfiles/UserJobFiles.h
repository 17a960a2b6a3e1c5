#pragma once

#include "helpers/jobfiles/JobFiles.h"
#include "helpers/jobfiles/JobFolders.h"

namespace mirvel {

/// Job files that are changed with the rights of the user of this process, which are the only limit.
class UserJobFiles final : public JobFiles {
 public:
  /// Creates and removes folders between a job folder and a file in these folders only.
  explicit UserJobFiles(JobFolders folders) : m_folders(std::move(folders)) {}

  Result<void> admit(const std::filesystem::path&) override { return {}; }
  Result<void> write(const std::filesystem::path& file, std::string_view content, mode_t mostOpen) override;
  Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to, std::string_view content,
                    mode_t mostOpen) override;
  Result<void> remove(const std::filesystem::path& file) override;
  Result<std::string> read(const std::filesystem::path& file) override;

 private:
  Result<void> makeOwnFolder(const std::filesystem::path& file) const;

  JobFolders m_folders;
};

}  // namespace mirvel
