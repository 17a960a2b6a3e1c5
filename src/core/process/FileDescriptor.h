#pragma once

#include <unistd.h>

#include <utility>

namespace mirvel {

/// Owns an open file descriptor and closes it in its destructor. Can be moved but not copied.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  /// Takes ownership of the result of open(2) and similar calls. -1 means none, so `errno` still has the reason.
  explicit FileDescriptor(int number) : m_number(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : m_number(other.release()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    if (this != &other) {
      reset();
      m_number = other.release();
    }
    return *this;
  }
  ~FileDescriptor() { reset(); }

  /// Whether there is a descriptor.
  explicit operator bool() const { return m_number >= 0; }
  /// The descriptor for system calls, which remains owned by this object; -1 if there is none.
  int number() const { return m_number; }
  /// Gives up ownership: the caller must close the descriptor.
  int release() { return std::exchange(m_number, -1); }
  /// Closes the descriptor. Errors are ignored; where they matter, release it and close it directly.
  void reset() {
    if (m_number >= 0) ::close(release());
  }

 private:
  int m_number = -1;
};

/// Both ends of a pipe, close-on-exec.
struct Pipe {
  FileDescriptor read;
  FileDescriptor write;

  /// Without ends, with `errno` set, if the process or the system has too many descriptors.
  static Pipe make();
  explicit operator bool() const { return read && write; }
};

}  // namespace mirvel
