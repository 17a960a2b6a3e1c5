#include "helpers/jobfiles/UserJobFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/files/ReplaceFile.h"
#include "core/process/FileDescriptor.h"
#include "helpers/jobfiles/MoveFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr mode_t folderMode = 0755;

FileDescriptor openFolder(const fs::path& folder) {
  return FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

bool isRegularFile(const fs::path& file) {
  struct stat status {};
  return ::lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Without this, a power failure could undo the removal and bring the job back.
void syncFolder(const fs::path& folder) {
  const FileDescriptor open = openFolder(folder);
  (void)syncToDevice(open.number());  // the file has been removed in any case
}

}  // namespace

Result<void> UserJobFiles::write(const fs::path& file, std::string_view content, mode_t mostOpen) {
  if (auto made = makeOwnFolder(file); !made) return made;
  return replaceFile(file, content, mostOpen);
}

Result<void> UserJobFiles::move(const fs::path& from, const fs::path& to, std::string_view content, mode_t mostOpen) {
  if (!isRegularFile(from)) return writeThenRemove(from, to, content, mostOpen);
  if (auto made = makeOwnFolder(to); !made) return made;
  const FileDescriptor fromFolder = openFolder(from.parent_path()), toFolder = openFolder(to.parent_path());
  if (!fromFolder || !toFolder) return systemError(errno, "write", to.string());
  const auto moved = moveFile({fromFolder.number(), from}, {toFolder.number(), to}, content, std::nullopt);
  if (!moved) return writeThenRemove(from, to, content, mostOpen);
  if (*moved && m_folders.isInOwnFolder(from))
    (void)::rmdir(from.parent_path().c_str());  // fails if it contains other files
  return *moved;
}

Result<void> UserJobFiles::remove(const fs::path& file) {
  if (::unlink(file.c_str()) != 0) {
    if (errno == ENOENT) return {};
    return systemError(errno, "delete", file.string());
  }
  syncFolder(file.parent_path());
  if (m_folders.isInOwnFolder(file)) (void)::rmdir(file.parent_path().c_str());  // fails if it contains other files
  return {};
}

Result<void> UserJobFiles::makeOwnFolder(const fs::path& file) const {
  if (!m_folders.isInOwnFolder(file) || ::mkdir(file.parent_path().c_str(), folderMode) == 0 || errno == EEXIST) {
    return {};
  }
  return systemError(errno, "write", file.string());
}

Result<std::string> UserJobFiles::read(const fs::path& file) {
  return readFile(file, JobFolder::largestFile);
}

}  // namespace mirvel
