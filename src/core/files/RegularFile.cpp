#include "core/files/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace mirvel {

Result<RegularFile> RegularFile::open(const std::filesystem::path& path) {
  const std::string& name = path.native();
  if (name.find('\0') != std::string::npos) {
    return Error{.code = Error::Code::BadArgument, .message = "the path holds a null character", .file = name};
  }
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return systemError(errno, "read", name);
  if (!S_ISREG(status.st_mode)) return noRegularFile(name);

  FileDescriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || ::fstat(file.number(), &status) != 0) return systemError(errno, "read", name);
  if (!S_ISREG(status.st_mode)) return noRegularFile(name);  // it was replaced meanwhile
  return RegularFile{std::move(file), static_cast<std::uint64_t>(status.st_size)};
}

Error noRegularFile(std::string path) {
  return {.code = Error::Code::Malformed, .message = "it is no regular file", .file = std::move(path)};
}

ssize_t readUninterrupted(int descriptor, char* to, std::size_t size) {
  ssize_t count = 0;
  do {
    count = ::read(descriptor, to, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace mirvel
