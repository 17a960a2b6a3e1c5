#pragma once

#include <sys/types.h>

#include "core/process/FileDescriptor.h"

namespace mirvel::host {

/// Lets a program go on without whoever started it. Until it is ready what it says still reaches them. For a process
/// that has a clean state, see `resetProcessState`.
class Detachment {
 public:
  /// Takes no more input. From here on a reader that has gone is no reason to end.
  Detachment();

  /// Goes on in a child with a session of its own, where it gives true. In the parent, or if there can be no child, it
  /// gives false: then `waitUntilReady` gives the exit status.
  bool fork();
  int waitUntilReady();

  /// The program can do what it is there for: lets go of the standard files and the parent.
  void complete();

 private:
  Pipe m_pipe;
  pid_t m_child = -1;
};

}  // namespace mirvel::host
