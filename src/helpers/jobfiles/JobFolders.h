#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "core/catalogue/Kind.h"

namespace mirvel {

/// Whether the text is a UUID in standard form, in either case: five groups of hexadecimal digits.
bool isUuid(std::string_view text);

/// The folders in which a helper may change job files.
class JobFolders {
 public:
  /// `agents` are folders whose files the helper may change, but whose jobs it doesn't run.
  explicit JobFolders(std::vector<std::filesystem::path> folders, std::vector<std::filesystem::path> agents = {});
  /// The folder of the user's agents.
  static JobFolders ofUser(const Roots& roots);
  /// The folders of daemons and of everyone's agents, both local and of the system.
  static JobFolders ofMachine(const Roots& roots);

  /// Both kinds.
  const std::vector<std::filesystem::path>& all() const { return m_folders; }
  /// Only the folders whose jobs the helper runs.
  JobFolders ofOwnJobs() const { return JobFolders(m_ownJobs); }
  /// Whether the path is directly in one of the folders, or in a folder of its own there. Compares text only.
  bool holds(const std::filesystem::path& file) const;
  /// Whether the path is in a folder of its own in one of the folders, where a job is saved if its file name exists
  /// already: `LaunchAgents/name/UUID.plist`.
  bool isInOwnFolder(const std::filesystem::path& file) const;

 private:
  std::vector<std::filesystem::path> m_ownJobs;
  std::vector<std::filesystem::path> m_folders;
};

}  // namespace mirvel
