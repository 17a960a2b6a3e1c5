#include "core/catalogue/JobFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "core/files/RegularFile.h"

namespace mirvel {

namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { ::closedir(directory); }
};

std::chrono::nanoseconds sinceEpoch(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

JobFolder::Stamp stampOf(const struct stat& status) {
  return {.device = static_cast<std::uint64_t>(status.st_dev),
          .inode = static_cast<std::uint64_t>(status.st_ino),
          .modified = sinceEpoch(modificationTime(status)),
          .changed = sinceEpoch(changeTime(status)),
          .size = static_cast<std::uint64_t>(status.st_size),
          .isRegular = S_ISREG(status.st_mode),
          .hasOtherNames = S_ISREG(status.st_mode) && status.st_nlink > 1};
}

Error tooLarge(std::string path) {
  return {.code = Error::Code::LimitExceeded, .message = "the file is too large", .file = std::move(path)};
}

}  // namespace

std::optional<JobFolder> JobFolder::open(const std::filesystem::path& path) {
  FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor) return std::nullopt;
  return JobFolder(path, std::move(descriptor));
}

std::optional<JobFolder::Entries> JobFolder::entries() const {
  // The stream takes ownership of its descriptor and changes its offset, so it needs one of its own.
  FileDescriptor own(::openat(m_descriptor.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!own) return std::nullopt;
  const std::unique_ptr<DIR, DirectoryCloser> directory(::fdopendir(own.number()));
  if (!directory) return std::nullopt;
  (void)own.release();

  Entries listed;
  std::vector<std::pair<ino_t, std::size_t>> order;
  errno = 0;  // readdir(3) returns null both at the end and after an error
  while (const dirent* entry = ::readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    order.emplace_back(entry->d_ino, listed.size());
    listed.push_back({std::string(name), entry->d_type == DT_REG});
    errno = 0;
  }
  if (errno != 0 && errno != ENOENT) return std::nullopt;
  std::sort(order.begin(), order.end());
  Entries result;
  result.reserve(listed.size());
  for (const auto& [inode, index] : order) result.push_back(std::move(listed[index]));
  return result;
}

std::optional<JobFolder::Stamp> JobFolder::stamp(const std::string& name) const {
  struct stat status {};
  if (::fstatat(m_descriptor.number(), name.c_str(), &status, 0) != 0) return std::nullopt;
  return stampOf(status);
}

FileDescriptor JobFolder::openEntry(const std::string& name, int flags) const {
  flags |= O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  return FileDescriptor(::openat(m_descriptor.number(), name.c_str(), flags));
}

Result<std::string> JobFolder::read(const std::string& name, const Stamp& stamp) const {
  if (!stamp.isRegular) return notRegularFile(m_prefix + name);
  if (stamp.size > largestFile) return tooLarge(m_prefix + name);
  const FileDescriptor file = openEntry(name, 0);
  if (!file) return systemError(errno, "read", m_prefix + name);
  // One byte more than expected, so that a short read signals the end.
  std::string bytes(stamp.size + 1, '\0');
  if (const auto result = readRest(file, name, bytes, 0); !result) return result.error();
  return bytes;
}

Result<std::string_view> JobFolder::readListed(const std::string& name, std::span<char> room, std::string& overflow,
                                               Stamp* stamp) const {
  const FileDescriptor file = openEntry(name, O_NOFOLLOW);
  if (!file) return systemError(errno, "read", m_prefix + name);
  if (stamp) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) return systemError(errno, "read", m_prefix + name);
    *stamp = stampOf(status);
    if (!stamp->isRegular) return notRegularFile(m_prefix + name);
  }
  const ssize_t count = readUninterrupted(file.number(), room.data(), room.size());
  if (count < 0) return systemError(errno, "read", m_prefix + name);
  const std::string_view bytes(room.data(), static_cast<std::size_t>(count));
  if (bytes.size() < room.size()) return bytes;
  constexpr std::size_t enoughForMost = std::size_t{16} << 10U;
  overflow = bytes;
  overflow.resize(bytes.size() + enoughForMost);
  if (const auto result = readRest(file, name, overflow, bytes.size()); !result) return result.error();
  return std::string_view(overflow);
}

/// Reads to the end of the file. The first `size` bytes of `bytes` have been read, the others are room for more.
Result<void> JobFolder::readRest(const FileDescriptor& file, const std::string& name, std::string& bytes,
                                 std::size_t size) const {
  while (true) {
    const ssize_t count = readUninterrupted(file.number(), bytes.data() + size, bytes.size() - size);
    if (count < 0) return systemError(errno, "read", m_prefix + name);
    size += static_cast<std::size_t>(count);
    if (size > largestFile) return tooLarge(m_prefix + name);
    if (count == 0 || size < bytes.size()) break;
    bytes.resize(std::min(size * 2, largestFile + 1));
  }
  bytes.resize(size);
  return {};
}

std::string unreadableJobLine(const std::string& path) {
  return "The job " + path +
         " does not contain a valid job or is symlinked to an unreadable location. If the job is symlinked, you can "
         "try to add the enclosing folder to Folders in Preferences - Advanced.";
}

}  // namespace mirvel
