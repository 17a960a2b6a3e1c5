#pragma once

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
  FileDescriptor descriptor;
  std::uint64_t size = 0;  ///< at the time of opening

  /// Follows links. Anything else than a regular file is refused with `Malformed` and isn't opened: to open a pipe or a
  /// device can wait, or do something.
  static Result<RegularFile> open(const std::filesystem::path& path);
};

/// The error for a file that isn't regular.
Error noRegularFile(std::string path);

/// read(2), begun again when a signal interrupts it.
ssize_t readUninterrupted(int descriptor, char* to, std::size_t size);

}  // namespace mirvel
