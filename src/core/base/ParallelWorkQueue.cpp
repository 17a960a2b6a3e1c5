#include "core/base/ParallelWorkQueue.h"

#include <utility>

namespace mirvel {

/// Shared with the threads, which can outlive the queue.
struct ParallelWorkQueue::State {
  std::mutex mutex = {};
  std::condition_variable changed = {};
  std::deque<Task> tasks = {};
  std::size_t threads = 0;
  std::size_t idle = 0;
  bool isEnding = false;

  void work() {
    while (true) {
      Task task;
      {
        std::unique_lock lock(mutex);
        ++idle;
        changed.wait(lock, [this] { return isEnding || !tasks.empty(); });
        --idle;
        if (isEnding) return;
        task = std::move(tasks.front());
        tasks.pop_front();
      }
      task();
    }
  }
};

ParallelWorkQueue::ParallelWorkQueue(std::string name, std::size_t mostThreads)
    : m_name(std::move(name)), m_mostThreads(mostThreads), m_state(std::make_shared<State>()) {}

ParallelWorkQueue::~ParallelWorkQueue() {
  std::deque<Task> dropped;  // destroyed without the lock
  {
    const std::lock_guard lock(m_state->mutex);
    m_state->isEnding = true;
    dropped.swap(m_state->tasks);
  }
  m_state->changed.notify_all();
}

void ParallelWorkQueue::add(Task task) {
  const std::lock_guard lock(m_state->mutex);
  m_state->tasks.push_back(std::move(task));
  m_state->changed.notify_one();
  if (m_state->tasks.size() <= m_state->idle || m_state->threads == m_mostThreads) return;
  ++m_state->threads;
  std::thread([state = m_state, name = m_name] {
    nameThisThread(name);
    state->work();
  }).detach();
}

}  // namespace mirvel
