#pragma once

#include <sys/types.h>

#include <initializer_list>

#include "core/process/FileDescriptor.h"

namespace mirvel {

/// Opens /dev/null in place of these descriptors.
void pointToNothing(std::initializer_list<int> descriptors);

/// Turns a program into a daemon: it continues in a child, while the process that its starter waits for ends as soon as
/// the child is ready. Until then the child's output still reaches the starter. For a process with one thread and a
/// clean state, see `resetProcessState`.
class Detachment {
 public:
  /// Closes the standard input, and ignores SIGPIPE from here on: the starter may be gone before the child is ready.
  Detachment();

  /// Returns true in a child with a session of its own. Returns false in the parent, and if there can be no child:
  /// then `waitUntilReady` returns the exit status to end with.
  bool fork();
  int waitUntilReady();

  /// Called by the child when it can do its work: releases the standard output and error, and the parent.
  void complete();

 private:
  Pipe m_pipe;
  pid_t m_child = -1;
};

}  // namespace mirvel
