#include "core/catalogue/JobFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <memory>

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

ssize_t readSome(int file, char* to, std::size_t size) {
  ssize_t count = 0;
  do {
    count = ::read(file, to, size);
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace

std::optional<JobFolder> JobFolder::open(const std::filesystem::path& path) {
  FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor) return std::nullopt;
  return JobFolder(path, std::move(descriptor));
}

std::vector<std::string> JobFolder::names() const {
  // The stream closes what it is given, and its place in the folder is shared with nobody.
  FileDescriptor own(::openat(m_descriptor.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!own) return {};
  const std::unique_ptr<DIR, DirectoryCloser> directory(::fdopendir(own.number()));
  if (!directory) return {};
  (void)own.release();

  std::vector<std::string> result;
  while (const dirent* entry = ::readdir(directory.get())) {
    std::string name = entry->d_name;
    if (name != "." && name != "..") result.push_back(std::move(name));
  }
  return result;
}

std::optional<JobFolder::Stamp> JobFolder::stamp(const std::string& name) const {
  struct stat status {};
  if (::fstatat(m_descriptor.number(), name.c_str(), &status, 0) != 0) return std::nullopt;
  return Stamp{.seconds = modified(status).tv_sec,
               .nanoseconds = modified(status).tv_nsec,
               .size = static_cast<std::uint64_t>(status.st_size),
               .isRegular = S_ISREG(status.st_mode)};
}

Result<std::string> JobFolder::read(const std::string& name, const Stamp& stamp) const {
  const auto path = [&] { return m_prefix + name; };
  if (!stamp.isRegular)
    return Error{.code = Error::Code::Malformed, .message = "it is no regular file", .file = path()};
  if (stamp.size > largestFile)
    return Error{.code = Error::Code::LimitExceeded, .message = "it is too large", .file = path()};
  const FileDescriptor file(
      ::openat(m_descriptor.number(), name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file) return systemError(errno, "read", path());

  // One byte more than there should be: a read that isn't filled is the last one, and the file hasn't grown.
  std::string bytes(stamp.size + 1, '\0');
  std::size_t size = 0;
  while (true) {
    const ssize_t count = readSome(file.number(), bytes.data() + size, bytes.size() - size);
    if (count < 0) return systemError(errno, "read", path());
    size += static_cast<std::size_t>(count);
    if (count == 0 || size < bytes.size()) break;
    if (size > largestFile)
      return Error{.code = Error::Code::LimitExceeded, .message = "it is too large", .file = path()};
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
