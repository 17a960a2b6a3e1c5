#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "core/base/Result.h"

namespace mirvel {

/// Reads a file, or anything else that can be read to its end, such as a pipe. `maximumSize` is in bytes and must be
/// finite, because /dev/zero is a file, too. Symbolic links are followed.
///
/// `LimitExceeded` if there is more; `NotFound`, `NotPermitted` or `Io` (for example of a folder) if it can't be read;
/// `BadArgument` if the path contains a null character. Errors have the path. Waits for the data of a pipe that someone
/// has open for writing; a named pipe without a writer is empty.
Result<std::string> readFile(const std::filesystem::path& path, std::size_t maximumSize);

/// The same for an open descriptor, from its current position. The path is only for errors. The descriptor stays open.
Result<std::string> readFile(int descriptor, std::size_t maximumSize, const std::filesystem::path& path);

/// Reads at most the first `count` bytes; fewer if the file is shorter. Errors as above.
Result<std::string> readBeginning(const std::filesystem::path& path, std::size_t count);

}  // namespace mirvel
