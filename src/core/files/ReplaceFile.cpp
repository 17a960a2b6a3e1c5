#include "core/files/ReplaceFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <optional>
#include <string>
#include <system_error>

#include "core/files/ExtendedAttributes.h"
#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace fs = std::filesystem;

int FileCalls::create(int folder, const char* name, mode_t mode) {
  return ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
}

ssize_t FileCalls::write(int file, const char* bytes, std::size_t count) {
  return ::write(file, bytes, count);
}

int FileCalls::setMode(int file, mode_t mode) {
  return ::fchmod(file, mode);
}

int syncToDevice(int fileOrFolder) {
#ifdef F_FULLFSYNC
  // On macOS, fsync leaves data in the cache of the device. Not every file system has F_FULLFSYNC.
  if (::fcntl(fileOrFolder, F_FULLFSYNC) == 0) return 0;
#endif
  return ::fsync(fileOrFolder);
}

int FileCalls::sync(int fileOrFolder) {
  return syncToDevice(fileOrFolder);
}

int FileCalls::close(int file) {
  return ::close(file);
}

int FileCalls::rename(int folder, const char* from, const char* to) {
  return ::renameat(folder, from, folder, to);
}

namespace {

Error writeError(int errnoValue, const fs::path& path) {
  return systemError(errnoValue, "write", path.string());
}

Error badPath(const char* why, const fs::path& path) {
  return {.code = Error::Code::BadArgument, .message = why, .file = path.string()};
}

/// The target of a chain of symbolic links, whether it exists or not. ELOOP after as many links as the kernel follows.
Result<fs::path> followLinks(const fs::path& path) {
  constexpr int longestChain = 40;
  fs::path target = path;
  for (int links = 0; links < longestChain; ++links) {
    std::error_code failure;
    if (!fs::is_symlink(fs::symlink_status(target, failure))) return target;
    const fs::path next = fs::read_symlink(target, failure);
    if (failure) return writeError(failure.value(), path);
    target = target.parent_path() / next;
  }
  return writeError(ELOOP, path);
}

/// The existing file that is replaced; both members are empty if there is none.
struct Replaced {
  FileDescriptor file = {};  ///< for its attributes; empty if it isn't readable
  std::optional<OwnerAndMode> owner = {};
};

Result<Replaced> replacedBy(int folder, const fs::path& target) {
  struct stat old {};
  if (::fstatat(folder, target.filename().c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return Replaced();
    return writeError(errno, target);
  }
  if (S_ISDIR(old.st_mode)) return badPath("can't write: it is a folder", target);
  if (!S_ISREG(old.st_mode)) return badPath("can't write: it isn't a regular file", target);
  // O_NONBLOCK and O_NOCTTY: something else may have taken the name meanwhile.
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  return Replaced{
      .file = FileDescriptor(::openat(folder, target.filename().c_str(), flags)),
      .owner = OwnerAndMode{old.st_uid, old.st_gid, static_cast<mode_t>(old.st_mode & 0777U)},
  };
}

/// Owner and mode of the result; nullopt: a new file, which keeps what it was created with.
std::optional<OwnerAndMode> ownerFor(const Replaced& old, const std::optional<OwnerAndMode>& fixed) {
  if (!fixed || !old.owner) return fixed ? fixed : old.owner;
  OwnerAndMode result = *fixed;
  result.mode &= old.owner->mode | S_IRWXU;
  // The access control list isn't kept, and with one, the group bits were the maximum of its entries, not the group's.
  if (old.file && hasAccessList(old.file.number())) result.mode &= ~static_cast<mode_t>(S_IRWXG);
  const bool wasRestricted = (old.owner->mode & S_IROTH) == 0;
  if (wasRestricted && old.owner->user == fixed->user) result.group = old.owner->group;
  return result;
}

/// The temporary file. The destructor deletes it unless it was renamed. Functions return 0 or an errno value.
class Temporary {
 public:
  Temporary(FileCalls& calls, int folder) : m_calls(calls), m_folder(folder) {}
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  ~Temporary() {
    m_file.reset();
    if (!m_name.empty()) ::unlinkat(m_folder, m_name.c_str(), 0);
  }

  int create(mode_t mode) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
      const std::string name = std::string(temporaryPrefix) + makeUuid();
      m_file = FileDescriptor(m_calls.create(m_folder, name.c_str(), mode));
      if (m_file) {
        m_name = name;
        return 0;
      }
      if (errno != EEXIST && errno != EINTR) return errno;
    }
    return EEXIST;
  }

  int write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t written = m_calls.write(m_file.number(), bytes.data(), bytes.size());
      if (written > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(written));
      } else if (written == 0) {
        return EIO;  // would otherwise loop forever
      } else if (errno != EINTR) {
        return errno;
      }
    }
    return 0;
  }

  /// Sets the attributes, flushes and closes. The owner comes first: changing it may clear mode bits.
  int finish(const Replaced& old, const std::optional<OwnerAndMode>& fixed) {
    auto wanted = ownerFor(old, fixed);
    if (fixed) {
      if (::fchown(m_file.number(), wanted->user, wanted->group) != 0) return errno;
    } else if (wanted && !keepOwner(*wanted)) {
      // The file has another group, which must not get more than everyone.
      wanted->mode &= ~static_cast<mode_t>(S_IRWXG) | (wanted->mode & S_IRWXO) << 3U;
    }
    if (old.file) {
      copyExtendedAttributes(old.file.number(), m_file.number(), fixed ? Attributes::Harmless : Attributes::All);
    }
    if (wanted && m_calls.setMode(m_file.number(), wanted->mode) != 0) return errno;
    if (m_calls.sync(m_file.number()) != 0) return errno;
    return m_calls.close(m_file.release()) == 0 ? 0 : errno;
  }

  int takePlaceOf(const char* name) {
    if (m_calls.rename(m_folder, m_name.c_str(), name) != 0) return errno;
    m_name.clear();
    return 0;
  }

 private:
  /// Best effort: only root may change the owner, and other users only set groups that they belong to. Returns whether
  /// the group could be set.
  bool keepOwner(const OwnerAndMode& owner) {
    return ::fchown(m_file.number(), owner.user, owner.group) == 0 ||
           ::fchown(m_file.number(), static_cast<uid_t>(-1), owner.group) == 0;
  }

  FileCalls& m_calls;
  int m_folder;
  FileDescriptor m_file;
  std::string m_name;
};

int replaceIn(int folder, const char* name, std::string_view bytes, const Replaced& old,
              const std::optional<OwnerAndMode>& fixed, mode_t mostOpen, FileCalls& calls) {
  Temporary temporary(calls, folder);
  // Until the final mode is set, after the content, nobody else may read it.
  const bool isNew = !old.owner && !fixed;
  if (const int failure = temporary.create(isNew ? newFileMode & (mostOpen | privateFile) : privateFile))
    return failure;
  if (const int failure = temporary.write(bytes)) return failure;
  if (const int failure = temporary.finish(old, fixed)) return failure;
  return temporary.takePlaceOf(name);
}

Result<void> syncFolder(int folder, const fs::path& target, FileCalls& calls) {
  // Some file systems can't flush a folder and return one of these two errors.
  if (calls.sync(folder) == 0 || errno == EINVAL || errno == ENOTSUP) return {};
  return systemError(errno, "flush the folder of the file", target.string());
}

Result<void> replaceFileIn(int folder, const fs::path& path, std::string_view bytes,
                           const std::optional<OwnerAndMode>& fixed, mode_t mostOpen, FileCalls& calls) {
  const auto old = replacedBy(folder, path);
  if (!old) return old.error();
  const int failure = replaceIn(folder, path.filename().c_str(), bytes, *old, fixed, mostOpen, calls);
  if (failure != 0) return writeError(failure, path);
  return syncFolder(folder, path, calls);
}

}  // namespace

Result<void> replaceFile(const fs::path& path, std::string_view bytes, mode_t mostOpen, FileCalls* calls) {
  if (auto valid = checkPath(path); !valid) return valid;
  const auto target = followLinks(path);
  if (!target) return target.error();
  if (!target->has_filename()) return badPath("can't write: the path has no file name", path);

  const fs::path parent = target->has_parent_path() ? target->parent_path() : fs::path(".");
  const FileDescriptor folder(::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return writeError(errno, *target);
  FileCalls system;
  return replaceFileIn(folder.number(), *target, bytes, std::nullopt, mostOpen, calls ? *calls : system);
}

Result<void> replaceFileIn(int folder, const fs::path& path, std::string_view bytes,
                           const std::optional<OwnerAndMode>& fixed) {
  FileCalls calls;
  return replaceFileIn(folder, path, bytes, fixed, newFileMode, calls);
}

Result<void> makePrivateFolder(const std::filesystem::path& folder) {
  std::error_code failure;
  if (folder.empty() || std::filesystem::is_directory(folder, failure)) return {};
  const auto parent = folder.parent_path();
  if (auto made = parent == folder ? Result<void>() : makePrivateFolder(parent); !made) return made;
  constexpr mode_t mode = 0700;
  if (::mkdir(folder.c_str(), mode) == 0 || errno == EEXIST) return {};
  return systemError(errno, "create the folder", folder.string());
}

}  // namespace mirvel
