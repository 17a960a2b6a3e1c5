#include "helpers/wire/Reaper.h"

#include <sys/wait.h>

#include <algorithm>
#include <cerrno>

namespace mirvel::wire {

namespace {

bool hasEnded(pid_t child) {
  const pid_t found = ::waitpid(child, nullptr, WNOHANG);
  return found == child || (found < 0 && errno != EINTR);
}

}  // namespace

Reaper::~Reaper() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
  }
  m_changed.notify_all();
  if (m_thread.joinable()) m_thread.join();
}

void Reaper::adopt(pid_t child) {
  {
    const std::lock_guard lock(m_mutex);
    m_children.push_back(child);
    if (!m_thread.joinable()) m_thread = std::thread([this] { work(); });
  }
  m_changed.notify_all();
}

void Reaper::work() {
  using SteadyClock = std::chrono::steady_clock;
  // Polling, because SIGCHLD and waiting for any child belong to the whole process, which may have other children.
  constexpr auto pollingInterval = std::chrono::milliseconds(10);
  std::unique_lock lock(m_mutex);
  auto end = SteadyClock::time_point::max();
  while (true) {
    collect();
    if (m_isEnding && end == SteadyClock::time_point::max()) end = SteadyClock::now() + m_patience;
    if (m_isEnding && (m_children.empty() || SteadyClock::now() >= end)) return;
    if (m_children.empty()) {
      m_changed.wait(lock, [this] { return m_isEnding || !m_children.empty(); });
    } else {
      m_changed.wait_for(lock, pollingInterval);
    }
  }
}

void Reaper::collect() {
  m_children.erase(std::remove_if(m_children.begin(), m_children.end(), hasEnded), m_children.end());
}

}  // namespace mirvel::wire
