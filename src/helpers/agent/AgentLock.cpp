#include "helpers/agent/AgentLock.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "core/files/ReplaceFile.h"

namespace mirvel::agent {

namespace fs = std::filesystem;

namespace {

struct flock wholeFile() {
  struct flock range {};
  range.l_type = F_WRLCK;
  range.l_whence = SEEK_SET;
  return range;
}

FileDescriptor openLock(const fs::path& path) {
  return FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

}  // namespace

Result<std::optional<AgentLock>> AgentLock::take(const Roots& roots, Wait wait) {
  const fs::path path = file(roots);
  if (auto made = makePrivateFolder(path.parent_path()); !made) return made.error();
  for (;;) {
    FileDescriptor opened = openLock(path);
    if (!opened) return systemError(errno, "open", path);
    struct flock range = wholeFile();
    if (::fcntl(opened.number(), F_SETLK, &range) != 0) {
      if (errno != EACCES && errno != EAGAIN) return systemError(errno, "lock", path);
      if (wait == Wait::No) return std::optional<AgentLock>();
      (void)::futimens(opened.number(), nullptr);  // the agent watches the file
      range = wholeFile();
      while (::fcntl(opened.number(), F_SETLKW, &range) != 0) {
        if (errno != EINTR) return systemError(errno, "lock", path);
      }
    }
    AgentLock lock(std::move(opened), path);
    // The file may have been deleted before it was locked, and others would lock a new one: then this tries again.
    if (lock.isWhole()) return std::optional(std::move(lock));
  }
}

std::optional<pid_t> AgentLock::holder(const Roots& roots) {
  const FileDescriptor opened(::open(file(roots).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
  struct flock range = wholeFile();
  if (!opened || ::fcntl(opened.number(), F_GETLK, &range) != 0 || range.l_type == F_UNLCK || range.l_pid <= 0) {
    return std::nullopt;
  }
  return range.l_pid;
}

}  // namespace mirvel::agent
