#include "core/process/FileDescriptor.h"

#include <fcntl.h>

#include <array>

namespace mirvel {

Pipe Pipe::make() {
  std::array<int, 2> ends{-1, -1};
#ifdef __APPLE__
  // There is no pipe2: a process that another thread starts in between inherits the ends, see SpawnPlan.
  if (::pipe(ends.data()) != 0) return {};
  for (const int end : ends) ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
#endif
  return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace mirvel
