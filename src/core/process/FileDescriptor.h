#pragma once

#include <unistd.h>

#include <utility>

namespace mirvel {

/// Owns an open file descriptor and closes it at the end of its life.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  /// Takes what open(2) and its kin gave; -1 is none.
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

  explicit operator bool() const { return m_number >= 0; }
  int number() const { return m_number; }
  /// Hands the descriptor over: the caller closes it.
  int release() { return std::exchange(m_number, -1); }
  void reset() {
    if (m_number >= 0) ::close(release());
  }

 private:
  int m_number = -1;
};

/// Both ends of a pipe, close-on-exec. Without ends: the process has too many descriptors, as `errno` says.
struct Pipe {
  FileDescriptor read;
  FileDescriptor write;

  static Pipe make();
  explicit operator bool() const { return read && write; }
};

}  // namespace mirvel
