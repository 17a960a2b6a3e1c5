#include "core/support/FileTrust.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string>

#include "core/support/ExtendedAttributes.h"
#include "core/support/FileDescriptor.h"
#include "core/support/RegularFile.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

#ifdef O_PATH
constexpr int openFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;  // which needs no right to read it
#else
constexpr int openFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

Error notTrusted(const fs::path& path, std::string message) {
  return {.code = Error::Code::NotTrusted, .message = std::move(message), .file = path};
}

bool isWritableByOthers(int file, const struct stat& status, const PrivateGroups& isPrivate) {
  if ((status.st_mode & S_IWOTH) != 0) return true;
  if ((status.st_mode & S_IWGRP) == 0) return false;
  // What root runs is trusted no further than launchd trusts it.
  return status.st_uid == 0 || hasAccessList(file) || !isPrivate(status.st_gid, status.st_uid);
}

Result<void> checkOwner(const fs::path& path, const struct stat& status, uid_t user) {
  if (status.st_uid == user || status.st_uid == 0) return {};
  const std::string owner = std::to_string(status.st_uid);
  return notTrusted(path, "it belongs to another user (number " + owner +
                              "), who could change what is run: change its owner with chown");
}

Result<void> checkMode(const fs::path& path, int file, const struct stat& status, const PrivateGroups& isPrivate) {
  if (!isWritableByOthers(file, status, isPrivate)) return {};
  return notTrusted(path, "others may write to it and could change what is run: forbid that with chmod go-w");
}

Result<void> checkFolder(const fs::path& path, int folder, uid_t user, const PrivateGroups& isPrivate) {
  struct stat status {};
  if (::fstat(folder, &status) != 0) return systemError(errno, "read", path);
  const auto owned = checkOwner(path, status, user);
  const bool isSticky = (status.st_mode & S_ISVTX) != 0;
  return owned && !isSticky ? checkMode(path, folder, status, isPrivate) : owned;
}

/// Where a link leads, seen from its folder.
Result<fs::path> targetOf(const fs::path& link, int folder) {
  std::array<char, PATH_MAX> buffer{};
  const ssize_t size = ::readlinkat(folder, link.filename().c_str(), buffer.data(), buffer.size());
  if (size < 0) return systemError(errno, "read", link);
  return link.parent_path() / fs::path(std::string(buffer.data(), static_cast<std::size_t>(size)));
}

}  // namespace

Result<void> checkTrust(const fs::path& file, int descriptor, uid_t user, const PrivateGroups& isPrivate) {
  struct stat opened {};
  if (::fstat(descriptor, &opened) != 0) return systemError(errno, "read", file);
  fs::path at = file;
  constexpr int mostLinks = 40;
  for (int links = 0; links < mostLinks; ++links) {
    const fs::path parent = at.has_parent_path() ? at.parent_path() : fs::path(".");
    const FileDescriptor folder(::open(parent.c_str(), openFolder));
    if (!folder) return systemError(errno, "read", parent);
    if (auto trusted = checkFolder(parent, folder.number(), user, isPrivate); !trusted) return trusted;
    struct stat entry {};
    if (::fstatat(folder.number(), at.filename().c_str(), &entry, AT_SYMLINK_NOFOLLOW) != 0) {
      return systemError(errno, "read", at);
    }
    if (auto owned = checkOwner(at, entry, user); !owned) return owned;
    if (!S_ISLNK(entry.st_mode)) {
      const bool isSame = entry.st_dev == opened.st_dev && entry.st_ino == opened.st_ino;
      return isSame ? checkMode(at, descriptor, opened, isPrivate)
                    : notTrusted(at, "it was replaced while it was read: try again");
    }
    auto target = targetOf(at, folder.number());
    if (!target) return target.error();
    at = *std::move(target);
  }
  return systemError(ELOOP, "read", file);
}

Result<void> checkTrust(const fs::path& file, uid_t user, const PrivateGroups& isPrivate) {
  const auto regular = RegularFile::open(file);
  return regular ? checkTrust(file, regular->descriptor.number(), user, isPrivate) : regular.error();
}

}  // namespace mirvel
