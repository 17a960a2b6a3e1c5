#include "core/files/ReadFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

namespace {

Error tooLarge(const std::filesystem::path& path, std::size_t maximumSize) {
  return {.code = Error::Code::LimitExceeded,
          .message = "it is larger than " + std::to_string(maximumSize) + " bytes",
          .file = path.string()};
}

/// Reads like read(2), but waits for data: the descriptor is non-blocking, see `openForReading`.
ssize_t readSome(int file, char* buffer, std::size_t size) {
  while (true) {
    const ssize_t count = readUninterrupted(file, buffer, size);
    if (count >= 0 || errno != EAGAIN) return count;
    pollfd ready{.fd = file, .events = POLLIN, .revents = 0};
    ::poll(&ready, 1, -1);
  }
}

/// The expected number of bytes; 0 if unknown.
std::size_t sizeOf(int file) {
  struct stat status {};
  if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return 0;
  return static_cast<std::size_t>(status.st_size);
}

Result<FileDescriptor> openForReading(const std::filesystem::path& path) {
  if (auto valid = checkPath(path); !valid) return valid.error();
  // O_NONBLOCK: opening a named pipe would otherwise wait for a writer.
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return systemError(errno, "read", path.string());
  return file;
}

Result<std::string> readUpTo(int file, std::size_t count, const std::filesystem::path& path) {
  std::string bytes;
  bytes.reserve(std::min(sizeOf(file), count));
  std::array<char, 65536> buffer;
  while (bytes.size() < count) {
    const ssize_t size = readSome(file, buffer.data(), std::min(buffer.size(), count - bytes.size()));
    if (size < 0) return systemError(errno, "read", path.string());
    if (size == 0) break;
    bytes.append(buffer.data(), static_cast<std::size_t>(size));
  }
  return bytes;
}

}  // namespace

Result<std::string> readFile(const std::filesystem::path& path, std::size_t maximumSize) {
  const auto file = openForReading(path);
  return file ? readFile(file->number(), maximumSize, path) : file.error();
}

Result<std::string> readFile(int descriptor, std::size_t maximumSize, const std::filesystem::path& path) {
  // One byte more than allowed shows that the file is too large, however large it is.
  auto bytes = readUpTo(descriptor, std::min(maximumSize, SIZE_MAX - 1) + 1, path);
  if (bytes && bytes->size() > maximumSize) return tooLarge(path, maximumSize);
  return bytes;
}

Result<std::string> readBeginning(const std::filesystem::path& path, std::size_t count) {
  const auto file = openForReading(path);
  return file ? readUpTo(file->number(), count, path) : file.error();
}

}  // namespace mirvel
