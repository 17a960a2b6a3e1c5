#pragma once

#include <cstddef>
#include <cstdint>

#include "core/locale/Localize.h"
#include "core/notifications/AgentMemory.h"
#include "core/notifications/Exceptions.h"
#include "core/ports/MainQueue.h"
#include "helpers/agent/Notifier.h"

namespace mirvel::agent {

/// Sends what the memory has to be told, and removes from there what the desktop has accepted. What is refused is sent
/// again after half a minute, two minutes, and then every ten; what can't be displayed now, when `plan` is called next.
/// While nothing waits, nothing is planned. For the main thread.
class NoticeSender {
 public:
  struct Setup {
    const Localize& localize;
    Exceptions& exceptions;
    AgentMemory& memory;
    Notifier& notifier;
    MainQueue& queue;
  };

  /// Everything in the setup must outlive this.
  explicit NoticeSender(const Setup& setup) : m_setup(setup), m_delay(setup.queue) {}

  /// Sends soon, together with what is added until then. Does nothing if there is nothing to tell.
  void plan();
  /// Whether the desktop hasn't answered yet.
  bool isSending() const { return m_sending > 0; }
  /// From now on, nothing more is sent.
  void stop() { m_isStopped = true; }

 private:
  void send();
  void dropExcepted();
  void answered(const Notification& notification, Notifier::Answer answer);
  void planRetry();

  const Setup m_setup;
  bool m_isPlanned = false;
  bool m_isStopped = false;
  std::size_t m_sending = 0;                              ///< notifications that haven't been answered
  Notifier::Answer m_worst = Notifier::Answer::Accepted;  ///< of those that have
  std::size_t m_refusals = 0;                             ///< in a row
  std::uint64_t m_attempts = 0;                           ///< each makes a retry that was planned before void
  Delay m_delay;
};

}  // namespace mirvel::agent
