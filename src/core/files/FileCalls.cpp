#include "core/files/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace mirvel {

int FileCalls::create(int folder, const char* name, mode_t mode) {
  return ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
}

ssize_t FileCalls::write(int file, const char* bytes, std::size_t count) {
  return ::write(file, bytes, count);
}

int FileCalls::setMode(int file, mode_t mode) {
  return ::fchmod(file, mode);
}

int FileCalls::sync(int fileOrFolder) {
#ifdef F_FULLFSYNC
  if (::fcntl(fileOrFolder, F_FULLFSYNC) == 0) return 0;  // not every file system of macOS has it
#endif
  return ::fsync(fileOrFolder);
}

int FileCalls::close(int file) {
  return ::close(file);
}

int FileCalls::rename(int folder, const char* from, const char* to) {
  return ::renameat(folder, from, folder, to);
}

}  // namespace mirvel
