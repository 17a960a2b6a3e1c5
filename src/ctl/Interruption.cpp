#include "ctl/Interruption.h"

#include <poll.h>
#include <signal.h>

#include <array>
#include <cerrno>

namespace mirvel::ctl {

Interruption::Interruption(Cancellation& cancellation) : m_signals{SIGINT, SIGTERM}, m_end(Pipe::make()) {
  if (!m_signals.isGood() || !m_end) return;  // then a signal ends the process, as usual
  m_thread = std::thread([this, &cancellation] {
    std::array<pollfd, 2> waiting = {{{.fd = m_signals.descriptor(), .events = POLLIN, .revents = 0},
                                      {.fd = m_end.read.number(), .events = POLLIN, .revents = 0}}};
    while (::poll(waiting.data(), waiting.size(), -1) < 0 && errno == EINTR) {
    }
    if (waiting[0].revents != 0) cancellation.cancel();
  });
}

Interruption::~Interruption() {
  m_end.write.reset();  // makes the other end readable
  if (m_thread.joinable()) m_thread.join();
}

}  // namespace mirvel::ctl
