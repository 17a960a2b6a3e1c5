#include "helpers/host/Lifeline.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "core/files/RegularFile.h"

namespace mirvel::host {

namespace fs = std::filesystem;

namespace {

fs::path pipeIn(const fs::path& machine) {
  return machine / "lifeline";
}

FileDescriptor openToRead(const fs::path& pipe) {
  return FileDescriptor(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
}

}  // namespace

Result<FileDescriptor> Lifeline::hold(const fs::path& machine) {
  const fs::path pipe = pipeIn(machine);
  std::error_code failure;
  fs::create_directories(machine, failure);  // on failure, mkfifo(3) reports the reason
  if (::mkfifo(pipe.c_str(), 0600) != 0) return systemError(errno, "make", pipe);
  const FileDescriptor reader = openToRead(pipe);  // without a reader, opening the write end would block
  FileDescriptor writer(reader ? ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC) : -1);
  return writer ? Result<FileDescriptor>(std::move(writer)) : systemError(errno, "open", pipe);
}

FileDescriptor Lifeline::open(const fs::path& machine) {
  struct stat found {};  // checked first: opening anything but a pipe could block or have effects
  if (machine.empty() || ::lstat(pipeIn(machine).c_str(), &found) != 0 || !S_ISFIFO(found.st_mode)) return {};
  return openToRead(pipeIn(machine));
}

bool Lifeline::isCut(const FileDescriptor& lifeline) {
  char byte = 0;
  return lifeline && readUninterrupted(lifeline.number(), &byte, 1) == 0;
}

}  // namespace mirvel::host
