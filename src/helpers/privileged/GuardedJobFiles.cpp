#include "helpers/privileged/GuardedJobFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "core/catalogue/JobFolder.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "helpers/jobfiles/MoveFile.h"
#include "helpers/jobfiles/UserJobFiles.h"
#include "helpers/privileged/ActingAs.h"
#include "helpers/privileged/TrustedFolder.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr mode_t folderMode = 0755;

Error refusal(const fs::path& file, const char* why) {
  return {.code = Error::Code::NotPermitted, .message = why, .file = file.string()};
}

/// Whether the path is absolute and has no "..", "." or repeated slashes, with which it could seem to be in one folder
/// and lead to another. For the same reason it has no null character, at which a system call would cut off the rest.
bool isPlain(const fs::path& path) {
  return path.is_absolute() && path.has_filename() && path.lexically_normal().native() == path.native() &&
         checkPath(path);
}

/// The state of a path: nothing, a link, or a regular file with a single name.
struct Entry {
  bool exists = false;
  bool isLink = false;
};

Result<Entry> entryIn(int folder, const fs::path& file) {
  struct stat status {};
  if (::fstatat(folder, file.filename().c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return Entry();
    return systemError(errno, "read", file.string());
  }
  if (S_ISLNK(status.st_mode)) return Entry{.exists = true, .isLink = true};
  if (!S_ISREG(status.st_mode)) return refusal(file, "it isn't a regular file");
  if (status.st_nlink != 1) return refusal(file, "the file has another hard link");
  return Entry{.exists = true};
}

}  // namespace

template <typename T>
Result<T> GuardedJobFiles::logged(Result<T> result) const {
  if (!result) m_console.log("refused: " + result.error().text());
  return result;
}

bool GuardedJobFiles::isUsers(const fs::path& file) const {
  return m_user && isPlain(file) && m_user->folders.holds(file);
}

Result<void> GuardedJobFiles::removeAsUser(const fs::path& file) const {
  const ActingAs acting(m_user->id);
  if (!acting) return refusal(file, "the helper can't act with the rights of its user");
  return UserJobFiles(m_user->folders).remove(file);
}

/// Only considers links in folders that only root may write to: a user's own link mustn't make its target writable.
bool GuardedJobFiles::isTargetOfLink(const fs::path& file, const JobFolders& folders) {
  for (const fs::path& folder : folders.all()) {
    if (!openTrustedFolder(folder)) continue;
    std::error_code failure, unresolved;
    // Not a range-based loop, which throws if the folder can't be read to its end.
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure)) {
      if (!entry->is_symlink(unresolved)) continue;
      if (fs::weakly_canonical(entry->path(), unresolved) == file && !unresolved) return true;
    }
  }
  return false;
}

Result<void> GuardedJobFiles::checkPlace(const fs::path& file) const {
  if (!isPlain(file)) return refusal(file, "the path isn't in its simplest form");
  if (!m_folders.holds(file) && !isTargetOfLink(file, m_folders)) return refusal(file, "it isn't in a job folder");
  return {};
}

Result<FileDescriptor> GuardedJobFiles::folderOf(const fs::path& file, Missing missing) const {
  if (auto place = checkPlace(file); !place) return place.error();
  if (missing == Missing::Make && m_folders.isInOwnFolder(file)) {
    const auto parent = openTrustedFolder(file.parent_path().parent_path());
    if (!parent) return parent.error();
    const fs::path name = file.parent_path().filename();
    if (::mkdirat(parent->number(), name.c_str(), folderMode) != 0 && errno != EEXIST) {
      return systemError(errno, "write", file.string());
    }
  }
  return openTrustedFolder(file.parent_path());
}

/// A missing folder isn't refused here: the operation itself fails, or has nothing to do.
Result<void> GuardedJobFiles::admit(const fs::path& file) {
  if (isUsers(file)) return {};
  const auto folder = folderOf(file, Missing::Refuse);
  if (!folder) {
    if (folder.error().code == Error::Code::NotFound) return {};
    return logged(Result<void>(folder.error()));
  }
  return admitIn(*folder, file);
}

Result<void> GuardedJobFiles::admitIn(const FileDescriptor& folder, const fs::path& file) const {
  const auto entry = entryIn(folder.number(), file);
  return entry ? Result<void>() : logged(Result<void>(entry.error()));
}

/// Checks the folder that contains a startup item, but not the item itself, which `removeTree` handles safely.
Result<void> GuardedJobFiles::admitRemoval(const fs::path& file) {
  const bool isItem = m_removable.isItem(file);
  if (!isPlain(file) || (!isItem && !m_removable.isTool(file))) return admit(file);
  const auto folder = openTrustedFolder(file.parent_path());
  if (!folder) return logged(Result<void>(folder.error()));
  return isItem ? Result<void>() : admitIn(*folder, file);
}

bool GuardedJobFiles::isForDaemons(const fs::path& file) const {
  const JobFolders daemons = m_folders.ofOwnJobs();
  return isPlain(file) && (daemons.holds(file) || isTargetOfLink(file, daemons));
}

Result<void> GuardedJobFiles::admitLoad(const fs::path& file) {
  if (isForDaemons(file)) return {};
  return logged(Result<void>(refusal(file, "only daemons are loaded as root, and it isn't in a folder of daemons")));
}

bool GuardedJobFiles::isForJobs(const fs::path& file) const {
  return JobFiles::isForJobs(file) && isForDaemons(file);
}

/// Whether the user couldn't read a new file of root's.
bool GuardedJobFiles::mayHide(mode_t mostOpen) const {
  return (mostOpen & S_IROTH) == 0 && m_user && m_user->id != ::geteuid() && !m_user->group;
}

/// Files belong to root, or to the user of this process in tests. A file that others may not read remains readable by
/// the user's private group, because otherwise the job would disappear from the user's window.
OwnerAndMode GuardedJobFiles::newFile(mode_t mostOpen) const {
  const auto mode = static_cast<mode_t>(0600U | (0644U & mostOpen));
  OwnerAndMode result{.user = ::geteuid(), .group = ::getegid(), .mode = mode};
  if ((mostOpen & S_IROTH) != 0 || !m_user || !m_user->group) return result;
  result.group = *m_user->group;
  result.mode |= S_IRGRP;
  return result;
}

Result<void> GuardedJobFiles::write(const fs::path& file, std::string_view content, mode_t mostOpen) {
  const auto folder = folderOf(file, Missing::Make);
  if (!folder) return logged(Result<void>(folder.error()));
  const auto entry = entryIn(folder->number(), file);
  if (!entry) return logged(Result<void>(entry.error()));
  if (entry->isLink) return logged(Result<void>(refusal(file, "it is a link")));
  return logged(replaceFileIn(folder->number(), file, content, newFile(mostOpen)));
}

/// Renames only within root's folders. A file of the user's is never renamed into them: its owner could still change
/// it, through a descriptor opened before. A new file is written instead.
Result<void> GuardedJobFiles::move(const fs::path& from, const fs::path& to, std::string_view content,
                                   mode_t mostOpen) {
  if (isUsers(from) && mayHide(mostOpen)) {
    return logged(Result<void>(
        refusal(from,
                "only its user may read it, and as root's it would be hidden from that user, who has no group of "
                "their own: let others read it first, as with chmod o+r")));
  }
  if (isUsers(from)) return writeThenRemove(from, to, content, mostOpen);
  const auto fromFolder = folderOf(from, Missing::Refuse), toFolder = folderOf(to, Missing::Make);
  const bool isGone = !fromFolder && fromFolder.error().code == Error::Code::NotFound;
  if (isGone) return writeThenRemove(from, to, content, mostOpen);
  for (const auto* folder : {&fromFolder, &toFolder}) {
    if (!*folder) return logged(Result<void>(folder->error()));
  }
  const auto old = entryIn(fromFolder->number(), from);
  if (!old) return logged(Result<void>(old.error()));
  if (!old->exists || old->isLink) return writeThenRemove(from, to, content, mostOpen);
  const auto moved = moveFile({fromFolder->number(), from}, {toFolder->number(), to}, content, newFile(mostOpen));
  if (!moved) return writeThenRemove(from, to, content, mostOpen);
  if (*moved && m_folders.isInOwnFolder(from))
    (void)::rmdir(from.parent_path().c_str());  // fails if it contains other files
  return logged(*moved);
}

Result<void> GuardedJobFiles::removeItem(const fs::path& item) const {
  const auto folder = openTrustedFolder(item.parent_path());
  if (!folder) return folder.error();
  struct stat status {};
  const bool isGone =
      ::fstatat(folder->number(), item.filename().c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
  return isGone ? Result<void>() : removeTree(folder->number(), item);
}

Result<void> GuardedJobFiles::remove(const fs::path& file) {
  if (isUsers(file)) return logged(removeAsUser(file));
  if (isPlain(file) && m_removable.isItem(file)) return logged(removeItem(file));
  if (isPlain(file) && m_removable.isTool(file)) {
    const auto tools = openTrustedFolder(file.parent_path());
    return logged(tools ? removeFrom(tools->number(), file) : tools.error());
  }
  const auto folder = folderOf(file, Missing::Refuse);
  if (!folder) {
    if (folder.error().code == Error::Code::NotFound) return {};
    return logged(Result<void>(folder.error()));
  }
  auto removed = removeFrom(folder->number(), file);
  if (removed && m_folders.isInOwnFolder(file))
    (void)::rmdir(file.parent_path().c_str());  // fails if it contains other files
  return logged(removed);
}

Result<void> GuardedJobFiles::removeFrom(int folder, const fs::path& file) const {
  const auto entry = entryIn(folder, file);
  if (!entry) return entry.error();
  if (!entry->exists) return {};
  if (::unlinkat(folder, file.filename().c_str(), 0) != 0) return systemError(errno, "delete", file.string());
  (void)syncToDevice(folder);  // the file has been removed in any case
  return {};
}

Result<std::string> GuardedJobFiles::read(const fs::path& file) {
  const auto folder = folderOf(file, Missing::Refuse);
  if (!folder) return folder.error();
  const auto entry = entryIn(folder->number(), file);
  if (!entry) return entry.error();
  if (!entry->isLink) return readIn(folder->number(), file);
  std::error_code failure;
  const fs::path target = fs::canonical(file, failure);
  if (failure) return systemError(failure.value(), "read", file.string());
  const auto targetFolder = folderOf(target, Missing::Refuse);
  if (!targetFolder) return targetFolder.error();
  return readIn(targetFolder->number(), target);
}

/// Checks the open file, because the name may refer to another one since `entryIn`. O_NONBLOCK, because a FIFO would
/// block.
Result<std::string> GuardedJobFiles::readIn(int folder, const fs::path& file) const {
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const FileDescriptor open(::openat(folder, file.filename().c_str(), flags));
  struct stat status {};
  if (!open || ::fstat(open.number(), &status) != 0) return systemError(errno, "read", file.string());
  if (!S_ISREG(status.st_mode) || status.st_nlink != 1) return refusal(file, "it isn't a regular file");
  return readFile(open.number(), JobFolder::largestFile, file);
}

}  // namespace mirvel
