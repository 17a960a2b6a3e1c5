#include "core/files/HostMark.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace mirvel {

namespace {

constexpr const char* markName = ".host";

// A lock of the open file, as opposed to the process, where the system has it. Unlike that of flock(2), it can't be
// taken by those who may only read the file.
#ifdef F_OFD_SETLK
constexpr int setLock = F_OFD_SETLK;
constexpr int getLock = F_OFD_GETLK;
#else
constexpr int setLock = F_SETLK;
constexpr int getLock = F_GETLK;
#endif

struct flock wholeFile(short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  return lock;
}

FileDescriptor openReports(const std::filesystem::path& folder) {
  return FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

}  // namespace

std::optional<HostMark::State> HostMark::in(const std::filesystem::path& folder) {
  const FileDescriptor opened = openReports(folder);
  if (!opened) return errno == ENOENT ? std::optional(State::None) : std::nullopt;
  return in(opened.number());
}

std::optional<HostMark::State> HostMark::in(int folder) {
  const FileDescriptor file(::openat(folder, markName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file) return errno == ENOENT ? std::optional(State::None) : std::nullopt;
  struct flock lock = wholeFile(F_RDLCK);  // asks what would conflict with it, and takes none
  if (::fcntl(file.number(), getLock, &lock) != 0) return std::nullopt;
  return lock.l_type == F_UNLCK ? State::Left : State::Held;
}

Result<HostMark> HostMark::set(int folder, const std::filesystem::path& path, mode_t mode) {
  FileDescriptor own(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
  if (!own) return systemError(errno, "open", path);
  const std::string unfinished = markName + ('-' + std::to_string(::getpid())) + ".new";
  ::unlinkat(folder, unfinished.c_str(), 0);  // left by a process that was killed
  // Nobody else can open it before it is locked. Only closing a file that was open for writing wakes those who watch
  // the folder.
  constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  FileDescriptor file(::openat(folder, unfinished.c_str(), flags, 0600));
  struct flock lock = wholeFile(F_WRLCK);
  const bool isSet = file && ::fcntl(file.number(), setLock, &lock) == 0 && ::fchmod(file.number(), mode) == 0 &&
                     ::renameat(folder, unfinished.c_str(), folder, markName) == 0;
  if (isSet) return HostMark(std::move(own), std::move(file));
  const int failure = errno;
  ::unlinkat(folder, unfinished.c_str(), 0);
  return systemError(failure, "write", path / markName);
}

Result<HostMark> HostMark::set(const std::filesystem::path& folder, mode_t mode) {
  const FileDescriptor opened = openReports(folder);
  if (!opened) return systemError(errno, "open", folder);
  return set(opened.number(), folder, mode);
}

HostMark& HostMark::operator=(HostMark&& other) noexcept {
  if (this != &other) {
    remove();
    m_folder = std::move(other.m_folder);
    m_file = std::move(other.m_file);
  }
  return *this;
}

bool HostMark::isIn(int folder) const {
  struct stat own {};
  struct stat present {};
  return m_file && ::fstat(m_file.number(), &own) == 0 &&
         ::fstatat(folder, markName, &present, AT_SYMLINK_NOFOLLOW) == 0 && own.st_dev == present.st_dev &&
         own.st_ino == present.st_ino;
}

void HostMark::remove() {
  if (isIn(m_folder.number())) ::unlinkat(m_folder.number(), markName, 0);
  m_file.reset();
}

}  // namespace mirvel
