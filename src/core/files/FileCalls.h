#pragma once

#include <sys/types.h>

#include <cstddef>

namespace mirvel {

/// The system calls by which `replaceFile` writes, so that a test can let each of them fail. All of them answer as
/// their namesakes do: -1 with `errno` set is a failure.
class FileCalls {
 public:
  FileCalls() = default;
  virtual ~FileCalls() = default;
  FileCalls(const FileCalls&) = delete;
  FileCalls& operator=(const FileCalls&) = delete;

  /// Makes a new file for writing, with the mode that the umask leaves; fails with EEXIST if the name is taken.
  virtual int create(int folder, const char* name, mode_t mode);
  virtual ssize_t write(int file, const char* bytes, std::size_t count);
  virtual int setMode(int file, mode_t mode);
  /// Flushes to the device itself, not just to the device's own cache where the system tells them apart.
  virtual int sync(int fileOrFolder);
  virtual int close(int file);
  virtual int rename(int folder, const char* from, const char* to);
};

}  // namespace mirvel
