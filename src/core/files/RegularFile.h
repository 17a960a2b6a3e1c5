#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// A regular file that is open for reading.
struct RegularFile {
  FileDescriptor descriptor;  ///< at the start of the file, non-blocking, close-on-exec
  std::uint64_t size = 0;     ///< in bytes, at the time of opening; the file may grow or shrink meanwhile

  /// Opens a file, following symbolic links. Anything but a regular file is rejected with `Malformed` without being
  /// opened, since opening a pipe or a device can block or have side effects. `NotFound`, `NotPermitted` or `Io` if it
  /// can't be opened, `BadArgument` if the path contains a null character. Errors have the path.
  static Result<RegularFile> open(const std::filesystem::path& path);
};

/// The error for a file that isn't regular, with the code `Malformed`.
Error notRegularFile(std::string path);

/// Fails with `BadArgument` if the path contains a null character: system calls would use only the part before it.
Result<void> checkPath(const std::filesystem::path& path);

/// read(2), repeated if a signal interrupts it. Returns the number of bytes, 0 at the end, or -1 with `errno` set.
ssize_t readUninterrupted(int descriptor, char* to, std::size_t size);

/// When the content was last changed. The field has another name on macOS. Refers to `status`.
inline const timespec& modificationTime(const struct stat& status) {
#ifdef __APPLE__
  return status.st_mtimespec;
#else
  return status.st_mtim;
#endif
}

/// When the content or the status (owner, mode, links) was last changed. Unlike the modification time, programs can't
/// set it.
inline const timespec& changeTime(const struct stat& status) {
#ifdef __APPLE__
  return status.st_ctimespec;
#else
  return status.st_ctim;
#endif
}

}  // namespace mirvel
