#include "core/catalogue/ByteSource.h"

#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <utility>

#include "core/files/RegularFile.h"

namespace mirvel {

Result<std::string> MemoryBytes::read(std::uint64_t offset, std::size_t count) {
  assert(offset <= m_bytes.size() && count <= m_bytes.size() - offset);
  return std::string(m_bytes.substr(static_cast<std::size_t>(offset), count));
}

FileBytes::FileBytes(FileDescriptor file, std::uint64_t size, std::string path)
    : m_file(std::move(file)), m_size(size), m_path(std::move(path)) {}

Result<FileBytes> FileBytes::open(const std::filesystem::path& path) {
  auto file = RegularFile::open(path);
  if (!file) return std::move(file).error();
  return FileBytes(std::move(file->descriptor), file->size, path.native());
}

Result<std::string> FileBytes::read(std::uint64_t offset, std::size_t count) {
  assert(offset <= m_size && count <= m_size - offset);
  std::string bytes(count, '\0');
  for (std::size_t done = 0; done < count;) {
    const auto place = static_cast<off_t>(offset + done);
    // pread leaves the file offset alone, and may return less than requested.
    const ssize_t got = ::pread(m_file.number(), bytes.data() + done, count - done, place);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return systemError(errno, "read", m_path);
    if (got == 0) {
      return Error{
          .code = Error::Code::Io, .message = "the file was truncated while it was being read", .file = m_path};
    }
    done += static_cast<std::size_t>(got);
  }
  return bytes;
}

}  // namespace mirvel
