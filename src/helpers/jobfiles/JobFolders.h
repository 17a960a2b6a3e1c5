#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "core/catalogue/Kind.h"

namespace mirvel {

/// Whether the text is a UUID in its standard form.
bool isUuid(std::string_view text);

/// The folders whose job files a helper may change.
class JobFolders {
 public:
  /// `agents` are folders of agents which the helper isn't to run itself.
  explicit JobFolders(std::vector<std::filesystem::path> folders, std::vector<std::filesystem::path> agents = {});
  /// Those of the user's agents.
  static JobFolders ofUser(const Roots& roots);
  /// Those of the machine and of the system.
  static JobFolders ofMachine(const Roots& roots);

  const std::vector<std::filesystem::path>& all() const { return m_folders; }
  /// Those whose jobs the helper runs.
  JobFolders ofOwnJobs() const { return JobFolders(m_ownJobs); }
  /// Whether the file lies directly in a job folder, or in a folder of its own there.
  bool holds(const std::filesystem::path& file) const;
  /// Whether the file lies in a folder of its own in a job folder: `LaunchAgents/name/UUID.plist`, which is where a
  /// job goes whose name is taken.
  bool isInOwnFolder(const std::filesystem::path& file) const;

 private:
  std::vector<std::filesystem::path> m_ownJobs;
  std::vector<std::filesystem::path> m_folders;
};

}  // namespace mirvel
