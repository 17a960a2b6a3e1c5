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

JobFolder::Stamp stampOf(const struct stat& status) {
  return {.seconds = modificationTime(status).tv_sec,
          .nanoseconds = modificationTime(status).tv_nsec,
          .size = static_cast<std::uint64_t>(status.st_size),
          .isRegular = S_ISREG(status.st_mode)};
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

JobFolder::Entries JobFolder::entries() const {
  // The stream takes ownership of its descriptor and changes its offset, so it needs one of its own.
  FileDescriptor own(::openat(m_descriptor.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!own) return {};
  const std::unique_ptr<DIR, DirectoryCloser> directory(::fdopendir(own.number()));
  if (!directory) return {};
  (void)own.release();

  Entries listed;
  std::vector<std::pair<ino_t, std::size_t>> order;
  while (const dirent* entry = ::readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    order.emplace_back(entry->d_ino, listed.size());
    listed.push_back({std::string(name), entry->d_type == DT_REG});
  }
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
  std::string room(stamp.size + 1, '\0');
  const auto bytes = readAll(file, name, room);
  if (!bytes) return bytes.error();
  room.resize(bytes->size());
  return room;
}

Result<std::string_view> JobFolder::readListed(const std::string& name, std::string& room, Stamp* stamp) const {
  constexpr std::size_t enoughForMost = std::size_t{16} << 10U;
  const FileDescriptor file = openEntry(name, O_NOFOLLOW);
  if (!file) return systemError(errno, "read", m_prefix + name);
  if (stamp) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) return systemError(errno, "read", m_prefix + name);
    *stamp = stampOf(status);
    if (!stamp->isRegular) return notRegularFile(m_prefix + name);
  }
  if (room.size() < enoughForMost) room.resize(enoughForMost);
  return readAll(file, name, room);
}

Result<std::string_view> JobFolder::readAll(const FileDescriptor& file, const std::string& name,
                                            std::string& room) const {
  std::size_t size = 0;
  while (true) {
    const ssize_t count = readUninterrupted(file.number(), room.data() + size, room.size() - size);
    if (count < 0) return systemError(errno, "read", m_prefix + name);
    size += static_cast<std::size_t>(count);
    if (size > largestFile) return tooLarge(m_prefix + name);
    if (count == 0 || size < room.size()) return std::string_view(room).substr(0, size);
    room.resize(std::min(size * 2, largestFile + 1));
  }
}

std::string unreadableJobLine(const std::string& path) {
  return "The job " + path +
         " does not contain a valid job or is symlinked to an unreadable location. If the job is symlinked, you can "
         "try "
         "to add the enclosing folder to Folders in Preferences - Advanced.";
}

}  // namespace mirvel
