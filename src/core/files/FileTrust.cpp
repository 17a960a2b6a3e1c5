#include "core/files/FileTrust.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <string>
#include <utility>

#include "core/files/ExtendedAttributes.h"
#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"

#ifdef __linux__
#include <grp.h>

#include <mutex>

#include "core/process/UserEntry.h"
#endif

namespace mirvel {

namespace fs = std::filesystem;

bool GroupUsers::isPrivateTo(uid_t user) const {
  const auto isUser = [user](const User& other) { return other.id == user; };
  const auto isNamesake = [this](const User& other) { return other.name == name; };
  return std::all_of(primary.begin(), primary.end(), isUser) &&
         std::any_of(primary.begin(), primary.end(), isNamesake) &&
         std::all_of(members.begin(), members.end(), [this](const std::string& member) { return member == name; });
}

#ifdef __linux__

namespace {

constexpr std::size_t entrySize = std::size_t{1} << 16U;

/// Enumerates the user database.
std::optional<std::vector<GroupUsers::User>> usersInDatabase(gid_t group) {
  static std::mutex mutex;  // the position of getpwent_r is shared by all threads
  const std::lock_guard lock(mutex);
  std::vector<char> buffer(entrySize);
  passwd entry{};
  ::setpwent();
  auto result = usersWithPrimary(
      group, [&](passwd*& found) { return ::getpwent_r(&entry, buffer.data(), buffer.size(), &found); });
  ::endpwent();
  return result;
}

}  // namespace

std::optional<std::vector<GroupUsers::User>> usersWithPrimary(gid_t group, const std::function<int(passwd*&)>& next) {
  std::vector<GroupUsers::User> result;
  for (;;) {
    passwd* found = nullptr;
    const int failure = next(found);
    if (failure != 0 && failure != ENOENT) return std::nullopt;
    if (!found) return result;
    if (found->pw_gid == group) result.push_back({found->pw_name, found->pw_uid});
  }
}

bool isPrivateGroup(gid_t group, uid_t user) {
  const auto owner = userEntry(user);
  if (!owner || owner->group != group) return false;
  auto primary = usersInDatabase(group);
  if (!primary) return false;
  GroupUsers users{.name = {}, .primary = *std::move(primary), .members = {}};
  users.primary.push_back({owner->login, user});  // who may be missing in an enumeration
  std::vector<char> buffer(entrySize);
  struct group entry {};
  struct group* found = nullptr;
  ::getgrgid_r(group, &entry, buffer.data(), buffer.size(), &found);
  if (!found) return false;
  users.name = found->gr_name;
  for (char** member = found->gr_mem; *member; ++member) users.members.emplace_back(*member);
  return users.isPrivateTo(user);
}

std::optional<gid_t> privateGroupOf(uid_t user) {
  const auto entry = userEntry(user);
  return entry && isPrivateGroup(entry->group, user) ? std::optional(entry->group) : std::nullopt;
}

#else

bool isPrivateGroup(gid_t, uid_t) {
  return false;
}

std::optional<gid_t> privateGroupOf(uid_t) {
  return std::nullopt;
}

#endif

namespace {

#ifdef O_PATH
constexpr int openFolder = O_PATH | O_DIRECTORY | O_CLOEXEC;  // needs no read permission
#else
constexpr int openFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

Error notTrusted(const fs::path& path, std::string message) {
  return {.code = Error::Code::NotTrusted, .message = std::move(message), .file = path};
}

bool isWritableByOthers(int file, const struct stat& status, const PrivateGroups& isPrivate) {
  if ((status.st_mode & S_IWOTH) != 0) return true;
  if ((status.st_mode & S_IWGRP) == 0) return false;
  // Files of root aren't trusted any further than launchd would.
  return status.st_uid == 0 || hasAccessList(file) || !isPrivate(status.st_gid, status.st_uid);
}

Result<void> checkOwner(const fs::path& path, const struct stat& status, uid_t user) {
  if (status.st_uid == user || status.st_uid == 0) return {};
  const std::string owner = std::to_string(status.st_uid);
  return notTrusted(path, "it belongs to another user (number " + owner +
                              "), who could change what is run: change the owner with chown");
}

Result<void> checkMode(const fs::path& path, int file, const struct stat& status, const PrivateGroups& isPrivate) {
  if (!isWritableByOthers(file, status, isPrivate)) return {};
  return notTrusted(path,
                    "others may write to it and could change what is run: remove their permission with chmod go-w");
}

Result<void> checkFolder(const fs::path& path, int folder, uid_t user, const PrivateGroups& isPrivate) {
  struct stat status {};
  if (::fstat(folder, &status) != 0) return systemError(errno, "read", path);
  const auto owned = checkOwner(path, status, user);
  const bool isSticky = (status.st_mode & S_ISVTX) != 0;
  return owned && !isSticky ? checkMode(path, folder, status, isPrivate) : owned;
}

/// The target of a symbolic link. `folder` is the open folder of the link.
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
  fs::path at = file;  // follows the links one by one
  constexpr int mostLinks = 40;
  for (int links = 0; links < mostLinks; ++links) {
    const fs::path parent = at.has_parent_path() ? at.parent_path() : fs::path(".");
    // Folder and entry are examined through one descriptor, so that no rename can come between.
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
                    : notTrusted(at, "it was replaced while it was being read: try again");
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
