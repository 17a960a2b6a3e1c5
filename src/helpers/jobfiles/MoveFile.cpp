#include "helpers/jobfiles/MoveFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>

namespace mirvel {

namespace {

/// rename(2) without replacing a file. Returns 0 or an errno value. On file systems that don't support this, it checks
/// for the new name before; only a process with write access to the folder could create such a file in between.
int renameExclusively(const FileIn& from, const FileIn& to) {
  const std::string old = from.path.filename(), name = to.path.filename();
#ifdef __APPLE__
  const int result = ::renameatx_np(from.folder, old.c_str(), to.folder, name.c_str(), RENAME_EXCL);
#else
  const int result = ::renameat2(from.folder, old.c_str(), to.folder, name.c_str(), RENAME_NOREPLACE);
#endif
  if (result == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return errno;
  struct stat status {};
  if (::fstatat(to.folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return ::renameat(from.folder, old.c_str(), to.folder, name.c_str()) == 0 ? 0 : errno;
}

}  // namespace

std::optional<Result<void>> moveFile(const FileIn& from, const FileIn& to, std::string_view content,
                                     const std::optional<OwnerAndMode>& fixed) {
  const int failure = renameExclusively(from, to);
  if (failure == EXDEV) return std::nullopt;
  if (failure != 0) return Result<void>(systemError(failure, "write", to.path.string()));
  auto written = replaceFileIn(to.folder, to.path, content, fixed);
  if (!written && renameExclusively(to, from) != 0) {
    Error error = written.error();
    error.message += "; the file has been moved, but has its old content";
    written = error;
  }
  (void)syncToDevice(from.folder);  // without it, a power failure may leave both names
  return written;
}

}  // namespace mirvel
