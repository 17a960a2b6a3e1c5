#include "core/files/FolderLock.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>

#include <cerrno>

namespace mirvel {

namespace {

/// Waits for the lock; empty if it can't be had.
FileDescriptor locked(FileDescriptor file) {
  constexpr int attempts = 100, pause = 10;  // in milliseconds
  for (int attempt = 0; file && attempt < attempts; ++attempt) {
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) return file;
    if (errno != EWOULDBLOCK && errno != EINTR) break;
    (void)::poll(nullptr, 0, pause);
  }
  return {};
}

}  // namespace

FileDescriptor lockFolder(const std::filesystem::path& folder) {
  return locked(FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

FileDescriptor lockFile(const std::filesystem::path& file) {
  constexpr mode_t onlyByTheOwner = 0600;
  return locked(
      FileDescriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, onlyByTheOwner)));
}

}  // namespace mirvel
