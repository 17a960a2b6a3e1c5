#include "helpers/privileged/TrustedFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// In a sticky folder such as /tmp, others can add entries, but can't replace or rename those of other users.
bool onlyRootChanges(const struct stat& status) {
  const bool isOurs = status.st_uid == 0 || status.st_uid == ::geteuid();
  const bool isShared = (status.st_mode & (S_IWGRP | S_IWOTH)) != 0;
  return isOurs && (!isShared || (status.st_mode & S_ISVTX) != 0);
}

Error untrusted(const fs::path& folder, const char* why) {
  return {.code = Error::Code::NotPermitted, .message = why, .file = folder.string()};
}

Result<FileDescriptor> checked(FileDescriptor open, const fs::path& folder) {
  if (!open) {
    if (errno == ELOOP || errno == ENOTDIR)
      return untrusted(folder, "the path contains a link or a file instead of a folder");
    return systemError(errno, "open", folder.string());
  }
  struct stat status {};
  if (::fstat(open.number(), &status) != 0) return systemError(errno, "open", folder.string());
  if (!onlyRootChanges(status)) return untrusted(folder, "users other than root may write to this folder");
  return open;
}

}  // namespace

Result<FileDescriptor> openTrustedFolderIn(int parent, const fs::path& folder) {
  return checked(FileDescriptor(::openat(parent, folder.filename().c_str(), folderFlags)), folder);
}

Result<FileDescriptor> openTrustedFolder(const fs::path& folder) {
  fs::path walked = "/";
  auto open = checked(FileDescriptor(::open("/", folderFlags)), walked);
  for (const fs::path& name : folder.relative_path()) {
    if (!open) return open;
    if (name.empty() || name == "." || name == "..") return untrusted(folder, "the path isn't in its simplest form");
    walked /= name;
    open = openTrustedFolderIn(open->number(), walked);
  }
  return open;
}

}  // namespace mirvel
