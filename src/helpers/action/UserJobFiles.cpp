#include "helpers/action/UserJobFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "core/catalogue/JobFolder.h"
#include "core/support/FileDescriptor.h"
#include "core/support/ReadFile.h"
#include "core/support/ReplaceFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr mode_t folderMode = 0755;

/// A removal that a loss of power undid would bring the job back.
void syncFolder(const fs::path& folder) {
  const FileDescriptor open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  FileCalls calls;
  (void)calls.sync(open.number());  // the file is gone already; there is nothing to take back
}

}  // namespace

Result<void> UserJobFiles::write(const fs::path& file, std::string_view content) {
  if (m_folders.isInOwnFolder(file) && ::mkdir(file.parent_path().c_str(), folderMode) != 0 && errno != EEXIST) {
    return systemError(errno, "write", file.string());
  }
  return replaceFile(file, content);
}

Result<void> UserJobFiles::remove(const fs::path& file) {
  if (::unlink(file.c_str()) != 0) {
    if (errno == ENOENT) return {};
    return systemError(errno, "delete", file.string());
  }
  syncFolder(file.parent_path());
  if (m_folders.isInOwnFolder(file)) (void)::rmdir(file.parent_path().c_str());  // others may lie in it
  return {};
}

Result<std::string> UserJobFiles::read(const fs::path& file) {
  return readFile(file, JobFolder::largestFile);
}

}  // namespace mirvel
