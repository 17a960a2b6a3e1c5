#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "core/base/Result.h"

namespace mirvel {

/// The bytes of a file, or of anything else that can be read to its end, such as a pipe. More than `maximumSize` bytes
/// are refused with `LimitExceeded`. A named pipe that nobody writes to reads as empty instead of waiting for a writer.
Result<std::string> readFile(const std::filesystem::path& path, std::size_t maximumSize);

/// The same of what is open already, from where it stands. The path is for errors.
Result<std::string> readFile(int descriptor, std::size_t maximumSize, const std::filesystem::path& path);

/// Its first bytes, as many as there are up to `count`.
Result<std::string> readBeginning(const std::filesystem::path& path, std::size_t count);

}  // namespace mirvel
