#pragma once

#include <sys/types.h>

#include <initializer_list>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Replaces these descriptors by /dev/null. Without effect if that can't be opened.
void pointToNothing(std::initializer_list<int> descriptors);

/// Turns a program into a daemon: it continues in a child process, and the original process, for which its parent
/// waits, ends when the child is ready. Until then the child's output reaches the parent, so that failures can be
/// reported. Requires a process with one thread and a clean state (see `resetProcessState`).
class Detachment {
 public:
  /// Redirects the standard input to /dev/null, and ignores SIGPIPE from now on, because the parent may have ended
  /// before the child is ready.
  Detachment();

  /// Returns true in the child, which has a session of its own. Returns false in the parent, and if no child can be
  /// created; the process must then end with the status that `waitUntilReady` returns.
  bool fork();
  /// Blocks until the child is ready (0) or has ended (its exit status, or 1).
  int waitUntilReady();

  /// To be called by the child when it is ready: lets the parent end, and redirects the standard output and error to
  /// /dev/null.
  void complete();

 private:
  Pipe m_pipe;
  pid_t m_child = -1;
};

}  // namespace mirvel
