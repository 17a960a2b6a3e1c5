#include "helpers/privileged/RemovableItems.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

#include "core/catalogue/Kind.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr int deepest = 16;  // each level keeps a descriptor open

bool liesIn(const std::vector<fs::path>& folders, const fs::path& path) {
  return std::find(folders.begin(), folders.end(), path.parent_path()) != folders.end();
}

Error cannotDelete(int errnoValue, const fs::path& path) {
  return systemError(errnoValue, "delete", path.string());
}

Result<void> removeTree(int parent, const fs::path& path, dev_t device, int depth);

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

Result<void> removeContent(FileDescriptor open, const fs::path& path, dev_t device, int depth) {
  const std::unique_ptr<DIR, CloseFolder> folder(::fdopendir(open.number()));
  if (!folder) return cannotDelete(errno, path);
  const int number = open.release();  // closedir() closes it
  std::vector<std::string> names;
  while (const dirent* const entry = ::readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
  }
  for (const std::string& name : names) {
    if (auto removed = removeTree(number, path / name, device, depth + 1); !removed) return removed;
  }
  return {};
}

Result<void> removeTree(int parent, const fs::path& path, dev_t device, int depth) {
  const std::string name = path.filename();
  struct stat status {};
  if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return cannotDelete(errno, path);
  const bool isFolder = S_ISDIR(status.st_mode);
  if (isFolder) {
    if (depth > deepest) return cannotDelete(ENOTEMPTY, path);
    FileDescriptor open(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!open || ::fstat(open.number(), &status) != 0) return cannotDelete(errno, path);
    if (status.st_dev != device) return cannotDelete(EXDEV, path);
    if (auto emptied = removeContent(std::move(open), path, device, depth); !emptied) return emptied;
  }
  if (::unlinkat(parent, name.c_str(), isFolder ? AT_REMOVEDIR : 0) != 0) return cannotDelete(errno, path);
  return {};
}

}  // namespace

RemovableItems RemovableItems::ofMachine(const Roots& roots) {
  return {
      .itemFolders = {*Kind(Kind::localStartupItem).folderURL(roots), *Kind(Kind::systemStartupItem).folderURL(roots)},
      .toolFolders = {*Kind(Kind::privilegedHelperTool).folderURL(roots)}};
}

bool RemovableItems::isItem(const fs::path& path) const {
  return liesIn(itemFolders, path);
}

bool RemovableItems::isTool(const fs::path& path) const {
  return liesIn(toolFolders, path);
}

Result<void> removeTree(int parent, const fs::path& path) {
  struct stat status {};
  if (::fstat(parent, &status) != 0) return cannotDelete(errno, path);
  return removeTree(parent, path, status.st_dev, 0);
}

}  // namespace mirvel
