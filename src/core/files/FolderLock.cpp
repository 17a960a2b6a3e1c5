#include "core/files/FolderLock.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>

#include <cerrno>

namespace mirvel {

FileDescriptor lockFolder(const std::filesystem::path& folder) {
  constexpr int attempts = 100, pause = 10;  // in milliseconds
  FileDescriptor file(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (int attempt = 0; file && attempt < attempts; ++attempt) {
    if (::flock(file.number(), LOCK_EX | LOCK_NB) == 0) return file;
    if (errno != EWOULDBLOCK && errno != EINTR) break;
    (void)::poll(nullptr, 0, pause);
  }
  return {};
}

}  // namespace mirvel
