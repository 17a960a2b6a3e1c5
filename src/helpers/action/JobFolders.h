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
  explicit JobFolders(std::vector<std::filesystem::path> folders) : m_folders(std::move(folders)) {}
  /// Those of the user's agents.
  static JobFolders ofUser(const Roots& roots);
  /// Those of the machine and of the system.
  static JobFolders ofMachine(const Roots& roots);

  const std::vector<std::filesystem::path>& all() const { return m_folders; }
  /// Whether the file lies in a folder of its own in a job folder: `LaunchAgents/name/UUID.plist`, which is where a
  /// job goes whose name is taken.
  bool isInOwnFolder(const std::filesystem::path& file) const;

 private:
  std::vector<std::filesystem::path> m_folders;
};

}  // namespace mirvel
