#include "helpers/host/Detachment.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "core/support/RegularFile.h"

namespace mirvel::host {

namespace {

void pointToNothing(std::initializer_list<int> descriptors) {
  const int nothing = ::open("/dev/null", O_RDWR);
  if (nothing < 0) return;
  for (const int descriptor : descriptors) ::dup2(nothing, descriptor);
  if (nothing > STDERR_FILENO) ::close(nothing);
}

/// What is opened later would take the place of a standard file that is missing.
void openStandardFiles() {
  int last = STDIN_FILENO;
  while (last >= 0 && last <= STDERR_FILENO) last = ::open("/dev/null", O_RDWR);
  if (last > STDERR_FILENO) ::close(last);
}

}  // namespace

Detachment::Detachment() {
  ::signal(SIGPIPE, SIG_IGN);  // whoever started this may be gone before it is ready
  openStandardFiles();
  constexpr long most = 65536;
  const long count = std::clamp(::sysconf(_SC_OPEN_MAX), 256L, most);
  for (int number = STDERR_FILENO + 1; number < count; ++number) ::close(number);
  pointToNothing({STDIN_FILENO});
  const mode_t given = ::umask(022);
  ::umask(given | 022);  // files of jobs are never for others to write, and no more open than the user's own
  (void)!::chdir("/");   // a folder that stays busy is no reason not to run
}

bool Detachment::fork() {
  m_pipe = Pipe::make();
  if (!m_pipe) return false;
  m_child = ::fork();
  if (m_child != 0) m_pipe.write.reset();
  if (m_child != 0) return false;
  m_pipe.read.reset();
  ::setsid();
  return true;
}

int Detachment::waitUntilReady() {
  if (m_child < 0) return 1;
  char byte = 0;
  if (readUninterrupted(m_pipe.read.number(), &byte, 1) == 1) return 0;
  int status = 0;
  ::waitpid(m_child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

void Detachment::complete() {
  if (m_pipe.write) (void)!::write(m_pipe.write.number(), "", 1);  // a parent that has gone needs no word
  m_pipe.write.reset();
  pointToNothing({STDOUT_FILENO, STDERR_FILENO});
}

}  // namespace mirvel::host
