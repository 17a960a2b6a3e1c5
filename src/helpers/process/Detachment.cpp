#include "helpers/process/Detachment.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/files/RegularFile.h"

namespace mirvel {

void pointToNothing(std::initializer_list<int> descriptors) {
  const int nothing = ::open("/dev/null", O_RDWR);
  if (nothing < 0) return;
  for (const int descriptor : descriptors) ::dup2(nothing, descriptor);
  if (nothing > STDERR_FILENO) ::close(nothing);
}

Detachment::Detachment() {
  ::signal(SIGPIPE, SIG_IGN);  // for writing to a parent that has ended
  pointToNothing({STDIN_FILENO});
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
  if (m_pipe.write) (void)!::write(m_pipe.write.number(), "", 1);  // fails if the parent has ended
  m_pipe.write.reset();
  pointToNothing({STDOUT_FILENO, STDERR_FILENO});
}

}  // namespace mirvel
