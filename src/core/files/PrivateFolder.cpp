#include "core/files/PrivateFolder.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

namespace mirvel {

Result<void> makePrivateFolder(const std::filesystem::path& folder) {
  std::error_code failure;
  if (folder.empty() || std::filesystem::is_directory(folder, failure)) return {};
  const auto parent = folder.parent_path();
  if (auto made = parent == folder ? Result<void>() : makePrivateFolder(parent); !made) return made;
  constexpr mode_t mode = 0700;
  if (::mkdir(folder.c_str(), mode) == 0 || errno == EEXIST) return {};
  return systemError(errno, "make the folder", folder.string());
}

}  // namespace mirvel
