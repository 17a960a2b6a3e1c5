#include "helpers/agent/PollQueue.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace mirvel::agent {

using namespace std::chrono;

PollQueue::PollQueue(host::PollLoop& loop) : m_loop(loop) {
  for (const int end : {m_waking.read.number(), m_waking.write.number()}) ::fcntl(end, F_SETFL, O_NONBLOCK);
  m_loop.watch(m_waking.read.number(), POLLIN, [this](short) {
    char bytes[64];
    while (::read(m_waking.read.number(), bytes, sizeof bytes) > 0) continue;
  });
}

PollQueue::~PollQueue() {
  m_loop.forget(m_waking.read.number());
}

void PollQueue::postAfter(double seconds, Task task) {
  {
    const std::lock_guard lock(m_mutex);
    m_tasks.emplace(steady_clock::now() + duration_cast<steady_clock::duration>(duration<double>(seconds)),
                    std::move(task));
  }
  const char byte = 0;
  (void)!::write(m_waking.write.number(), &byte, 1);  // if the pipe is full, the loop will wake in any case
}

void PollQueue::sleep(double seconds) {
  (void)::poll(nullptr, 0, static_cast<int>(seconds * 1000));
}

void PollQueue::runDue() {
  // Tasks that these post are left to the next turn, so that descriptors get their turn too.
  const Time now = steady_clock::now();
  std::vector<Task> due;
  {
    const std::lock_guard lock(m_mutex);
    const auto end = m_tasks.upper_bound(now);
    for (auto task = m_tasks.begin(); task != end; ++task) due.push_back(std::move(task->second));
    m_tasks.erase(m_tasks.begin(), end);
  }
  for (const Task& task : due) task();
}

int PollQueue::timeout() const {
  const std::lock_guard lock(m_mutex);
  if (m_tasks.empty()) return -1;
  const auto left = ceil<milliseconds>(m_tasks.begin()->first - steady_clock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
}

}  // namespace mirvel::agent
