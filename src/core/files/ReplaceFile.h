#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

/// The system calls with which `replaceFile` writes, as virtual functions, so that tests can make any of them fail. All
/// of them return what the system calls do: -1 with `errno` set on failure.
class FileCalls {
 public:
  FileCalls() = default;
  virtual ~FileCalls() = default;
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

  /// Creates a new file for writing, with `mode` less the umask. EEXIST if the name is taken, even by a dangling link.
  virtual int create(int folder, const char* name, mode_t mode);
  virtual ssize_t write(int file, const char* bytes, std::size_t count);
  virtual int setMode(int file, mode_t mode);
  /// See `syncToDevice`.
  virtual int sync(int fileOrFolder);
  virtual int close(int file);
  virtual int rename(int folder, const char* from, const char* to);
};

/// Flushes a file or folder to the storage device, on macOS including the cache of the device itself. Returns 0, or -1
/// with `errno` set.
int syncToDevice(int fileOrFolder);

/// The prefix of temporary file names. While a file is being written, there is one such file beside it.
inline constexpr std::string_view temporaryPrefix = ".mirvel-";

/// The mode of new files.
inline constexpr mode_t newFileMode = 0644;
/// The mode of files that only their owner may read.
inline constexpr mode_t privateFile = 0600;

/// Replaces the content of a file atomically, or creates the file. Readers see all of the old or all of the new
/// content, even after a power failure: the bytes are written to a temporary file in the same folder and flushed to the
/// device, then the file is renamed, and the folder is flushed.
///
/// - A symbolic link is kept: its target is replaced, or created if it is missing.
/// - Owner, permissions and extended attributes of the old file are kept as far as this process may set them. If that
///   isn't possible for the group, the new group gets no more permissions than others have.
/// - A new file gets the mode 0644, less the umask and less what `mostOpen` doesn't contain, except that its owner can
///   always read and write it. Others can never write it, even with a umask of 002, because launchd doesn't load such
///   job files.
/// - The folder must exist.
///
/// `BadArgument` for a folder, a device, a pipe, or a path that contains a null character or no file name; otherwise
/// `NotFound`, `NotPermitted` or `Io`. On failure the old file is unchanged and the temporary file is removed, with one
/// exception: if flushing the folder fails, the new content is in place but may not survive a power failure.
///
/// `calls` is for tests that simulate failures; null: the system's own.
Result<void> replaceFile(const std::filesystem::path& path, std::string_view bytes, mode_t mostOpen = newFileMode,
                         FileCalls* calls = nullptr);

/// Owner and permissions of a file.
struct OwnerAndMode {
  uid_t user = 0;
  gid_t group = 0;
  mode_t mode = 0;  ///< permission bits
};

/// Like `replaceFile`, for callers that don't trust the path: `folder` is the open folder, only the last component of
/// `path` is used in it, and a symbolic link of that name is rejected with `BadArgument`.
///
/// With `fixed`, the file gets this owner and mode; failing to set them is an error, and extended attributes that grant
/// access aren't kept. An existing file doesn't become more accessible by it: group and others keep at most the rights
/// that they had, and a file of the same owner that wasn't readable by everyone keeps its group.
Result<void> replaceFileIn(int folder, const std::filesystem::path& path, std::string_view bytes,
                           const std::optional<OwnerAndMode>& fixed);

/// Creates a folder and its missing ancestors with the mode 0700. Existing folders are left as they are; an empty path
/// is fine. Errors have the path of the folder that couldn't be created.
Result<void> makePrivateFolder(const std::filesystem::path& folder);

}  // namespace mirvel
