#include "core/files/HostMark.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

namespace mirvel {

namespace {

constexpr const char* markName = ".host";
constexpr const char* unfinishedMark = ".host.new";

}  // namespace

HostMark::State HostMark::in(const std::filesystem::path& folder) {
  constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const FileDescriptor file(::open((folder / markName).c_str(), flags));
  if (!file) return State::None;
  // A host locks the file before it gives it this name, so taking the lock for a moment keeps no host from it.
  if (::flock(file.number(), LOCK_SH | LOCK_NB) == 0) return State::Left;
  return errno == EWOULDBLOCK ? State::Held : State::None;
}

Result<HostMark> HostMark::set(int folder, const std::filesystem::path& path, mode_t mode) {
  FileDescriptor own(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
  if (!own) return systemError(errno, "open", path);
  ::unlinkat(folder, unfinishedMark, 0);  // left by a host that was killed
  // Only closing a file that was open for writing wakes those who watch the folder.
  constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  FileDescriptor file(::openat(folder, unfinishedMark, flags, mode));
  const bool isSet = file && ::fchmod(file.number(), mode) == 0 && ::flock(file.number(), LOCK_EX | LOCK_NB) == 0 &&
                     ::renameat(folder, unfinishedMark, folder, markName) == 0;
  if (!isSet) return systemError(errno, "write", path / markName);
  return HostMark(std::move(own), std::move(file));
}

Result<HostMark> HostMark::set(const std::filesystem::path& folder, mode_t mode) {
  const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
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
