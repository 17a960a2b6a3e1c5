#include "helpers/process/Signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <utility>

namespace mirvel {

namespace {

// Global, because a signal handler has no other access to it.
std::atomic<int> writingEnd{-1};

void note(int number) {
  const int failure = errno;
  const auto byte = static_cast<unsigned char>(number);
  (void)!::write(writingEnd, &byte, 1);  // if the pipe is full, `take` assumes SIGCHLD
  errno = failure;
}

}  // namespace

Signals::Signals(std::set<int> numbers) : m_pipe(Pipe::make()), m_numbers(std::move(numbers)) {
  if (!m_pipe) return;
  ::fcntl(m_pipe.read.number(), F_SETFL, O_NONBLOCK);
  ::fcntl(m_pipe.write.number(), F_SETFL, O_NONBLOCK);
  writingEnd = m_pipe.write.number();
  struct sigaction action {};
  action.sa_handler = note;
  action.sa_flags = SA_RESTART;
  for (const int number : m_numbers) ::sigaction(number, &action, nullptr);
}

Signals::~Signals() {
  for (const int number : m_numbers) ::signal(number, SIG_DFL);
  writingEnd = -1;
}

std::set<int> Signals::take() {
  std::set<int> result;
  std::array<unsigned char, 256> bytes;
  ssize_t count = 0;
  while ((count = ::read(descriptor(), bytes.data(), bytes.size())) > 0) {
    result.insert(bytes.begin(), bytes.begin() + count);
    // The pipe may have been full, and SIGCHLD been dropped.
    if (count == static_cast<ssize_t>(bytes.size())) result.insert(SIGCHLD);
  }
  return result;
}

}  // namespace mirvel
