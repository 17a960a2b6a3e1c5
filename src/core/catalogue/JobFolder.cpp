#include "core/catalogue/JobFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "core/support/RegularFile.h"

namespace mirvel {

namespace {

struct DirectoryCloser {
  void operator()(DIR* directory) const { ::closedir(directory); }
};

/// The modification date, which macOS names otherwise.
const timespec& modified(const struct stat& status) {
#ifdef __APPLE__
  return status.st_mtimespec;
#else
  return status.st_mtim;
#endif
}

JobFolder::Stamp stampOf(const struct stat& status) {
  return {.seconds = modified(status).tv_sec,
          .nanoseconds = modified(status).tv_nsec,
          .size = static_cast<std::uint64_t>(status.st_size),
          .isRegular = S_ISREG(status.st_mode)};
}

Error tooLarge(std::string path) {
  return {.code = Error::Code::LimitExceeded, .message = "it is too large", .file = std::move(path)};
}

}  // namespace

std::optional<JobFolder> JobFolder::open(const std::filesystem::path& path) {
  FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor) return std::nullopt;
  return JobFolder(path, std::move(descriptor));
}

std::vector<JobFolder::Entry> JobFolder::entries() const {
  // The stream closes what it is given, and its place in the folder is shared with nobody.
  FileDescriptor own(::openat(m_descriptor.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!own) return {};
  const std::unique_ptr<DIR, DirectoryCloser> directory(::fdopendir(own.number()));
  if (!directory) return {};
  (void)own.release();

  std::vector<Entry> result;
  while (const dirent* entry = ::readdir(directory.get())) {
    std::string name = entry->d_name;
    if (name != "." && name != "..") result.push_back({std::move(name), entry->d_type == DT_REG});
  }
  return result;
}

std::optional<JobFolder::Stamp> JobFolder::stamp(const std::string& name) const {
  struct stat status {};
  if (::fstatat(m_descriptor.number(), name.c_str(), &status, 0) != 0) return std::nullopt;
  return stampOf(status);
}

FileDescriptor JobFolder::openEntry(const std::string& name) const {
  return FileDescriptor(::openat(m_descriptor.number(), name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

Result<std::string> JobFolder::read(const std::string& name, const Stamp& stamp) const {
  if (!stamp.isRegular) return noRegularFile(m_prefix + name);
  const FileDescriptor file = openEntry(name);
  if (!file) return systemError(errno, "read", m_prefix + name);
  return readAll(file, name, stamp);
}

Result<JobFolder::Contents> JobFolder::readListed(const std::string& name) const {
  const FileDescriptor file = openEntry(name);
  struct stat status {};
  if (!file || ::fstat(file.number(), &status) != 0) return systemError(errno, "read", m_prefix + name);
  const Stamp stamp = stampOf(status);
  if (!stamp.isRegular) return noRegularFile(m_prefix + name);
  auto data = readAll(file, name, stamp);
  if (!data) return std::move(data).error();
  return Contents{*std::move(data), stamp};
}

Result<std::string> JobFolder::readAll(const FileDescriptor& file, const std::string& name, const Stamp& stamp) const {
  if (stamp.size > largestFile) return tooLarge(m_prefix + name);
  // One byte more than there should be: a read that isn't filled is the last one, and the file hasn't grown.
  std::string bytes(stamp.size + 1, '\0');
  std::size_t size = 0;
  while (true) {
    const ssize_t count = readUninterrupted(file.number(), bytes.data() + size, bytes.size() - size);
    if (count < 0) return systemError(errno, "read", m_prefix + name);
    size += static_cast<std::size_t>(count);
    if (count == 0 || size < bytes.size()) break;
    if (size > largestFile) return tooLarge(m_prefix + name);
    bytes.resize(std::min(size * 2, largestFile + 1));
  }
  bytes.resize(size);
  return bytes;
}

std::string unreadableJobLine(const std::string& path) {
  return "The job " + path +
         " does not contain a valid job or is symlinked to an unreadable location. If the job is symlinked, you can "
         "try "
         "to add the enclosing folder to Folders in Preferences - Advanced.";
}

}  // namespace mirvel
