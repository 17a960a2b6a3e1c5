#pragma once

#include "core/support/FileDescriptor.h"

namespace mirvel {

/// Both ends of a pipe, close-on-exec. Without ends: the process has too many descriptors, as `errno` says.
struct Pipe {
  FileDescriptor read;
  FileDescriptor write;

  static Pipe make();
  explicit operator bool() const { return read && write; }
};

}  // namespace mirvel
