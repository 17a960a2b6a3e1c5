#include "core/files/RegularFile.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

namespace mirvel {

Result<RegularFile> RegularFile::open(const std::filesystem::path& path) {
  if (auto valid = checkPath(path); !valid) return valid.error();
  const std::string& name = path.native();
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return systemError(errno, "read", name);
  if (!S_ISREG(status.st_mode)) return notRegularFile(name);

  // Non-blocking and not as a controlling terminal: a pipe or a device may have taken the name since stat.
  FileDescriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || ::fstat(file.number(), &status) != 0) return systemError(errno, "read", name);
  if (!S_ISREG(status.st_mode)) return notRegularFile(name);
  return RegularFile{std::move(file), static_cast<std::uint64_t>(status.st_size)};
}

Error notRegularFile(std::string path) {
  return {.code = Error::Code::Malformed, .message = "it isn't a regular file", .file = std::move(path)};
}

Result<void> checkPath(const std::filesystem::path& path) {
  if (path.native().find('\0') == std::string::npos) return {};
  return Error{
      .code = Error::Code::BadArgument, .message = "the path contains a null character", .file = path.string()};
}

ssize_t readUninterrupted(int descriptor, char* to, std::size_t size) {
  ssize_t count = 0;
  do {
    count = ::read(descriptor, to, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace mirvel
