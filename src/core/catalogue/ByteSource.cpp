#include "core/catalogue/ByteSource.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cassert>
#include <cerrno>
#include <utility>

namespace mirvel {

namespace {

Error noRegularFile(const std::string& path) {
  return {.code = Error::Code::Malformed, .message = "it is no regular file", .file = path};
}

}  // namespace

Result<std::string> MemoryBytes::read(std::uint64_t offset, std::size_t count) {
  assert(offset <= m_bytes.size() && count <= m_bytes.size() - offset);
  return std::string(m_bytes.substr(static_cast<std::size_t>(offset), count));
}

FileBytes::FileBytes(FileDescriptor file, std::uint64_t size, std::string path)
    : m_file(std::move(file)), m_size(size), m_path(std::move(path)) {}

Result<FileBytes> FileBytes::open(const std::filesystem::path& path) {
  const std::string& name = path.native();
  if (name.find('\0') != std::string::npos) {
    return Error{.code = Error::Code::BadArgument, .message = "the path holds a null character", .file = name};
  }
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return systemError(errno, "read", name);
  if (!S_ISREG(status.st_mode)) return noRegularFile(name);  // opening a device may already do something

  FileDescriptor file(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || ::fstat(file.number(), &status) != 0) return systemError(errno, "read", name);
  if (!S_ISREG(status.st_mode)) return noRegularFile(name);
  return FileBytes(std::move(file), static_cast<std::uint64_t>(status.st_size), name);
}

Result<std::string> FileBytes::read(std::uint64_t offset, std::size_t count) {
  assert(offset <= m_size && count <= m_size - offset);
  std::string bytes(count, '\0');
  for (std::size_t done = 0; done < count;) {
    const auto place = static_cast<off_t>(offset + done);
    const ssize_t got = ::pread(m_file.number(), bytes.data() + done, count - done, place);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return systemError(errno, "read", m_path);
    if (got == 0) {
      return Error{.code = Error::Code::Io, .message = "it was cut short while it was read", .file = m_path};
    }
    done += static_cast<std::size_t>(got);
  }
  return bytes;
}

}  // namespace mirvel
