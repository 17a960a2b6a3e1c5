#include "core/base/ThreadWorkQueue.h"

#include <pthread.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <utility>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace mirvel {

void nameThisThread(const std::string& name) {
  const std::string text = name.substr(0, 15);  // Linux rejects longer names
#ifdef __APPLE__
  (void)::pthread_setname_np(text.c_str());  // only for debugging
#else
  (void)::pthread_setname_np(::pthread_self(), text.c_str());
#endif
}

ThreadWorkQueue::ThreadWorkQueue(const std::string& name)
    : m_thread([this, name] {
        nameThisThread(name);
        work();
      }) {}

ThreadWorkQueue::~ThreadWorkQueue() {
  std::deque<Task> dropped;  // destroyed without the lock: destructors of captured objects may do anything
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
    dropped.swap(m_tasks);
  }
  dropped.clear();
  m_changed.notify_all();
  m_thread.join();
}

void ThreadWorkQueue::add(Task task) {
  {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
  }
  m_changed.notify_all();
}

void ThreadWorkQueue::work() {
  while (true) {
    Task task;
    {
      std::unique_lock lock(m_mutex);
      m_changed.wait(lock, [this] { return m_isEnding || !m_tasks.empty(); });
      if (m_isEnding) return;
      task = std::move(m_tasks.front());
      m_tasks.pop_front();
    }
    task();
  }
}

void growHeapOfThisThread() {
#ifdef __GLIBC__
  // Each piece is small enough to come from the heap rather than from mmap; together they hold some thousand jobs.
  constexpr std::size_t pieceSize = std::size_t{100} << 10U;
  ::mallopt(M_TRIM_THRESHOLD, 64 << 20);
  std::array<void*, 80> pieces;
  for (void*& piece : pieces) piece = std::malloc(pieceSize);
  for (void* const piece : pieces) std::free(piece);
#endif
}

}  // namespace mirvel
