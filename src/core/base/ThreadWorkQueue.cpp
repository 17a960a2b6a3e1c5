#include "core/base/ThreadWorkQueue.h"

#include <pthread.h>

#include <utility>

namespace mirvel {

namespace {

void nameThread(const std::string& name) {
  const std::string text = name.substr(0, 15);  // Linux takes no more
#ifdef __APPLE__
  (void)::pthread_setname_np(text.c_str());  // a name is a nicety
#else
  (void)::pthread_setname_np(::pthread_self(), text.c_str());
#endif
}

}  // namespace

ThreadWorkQueue::ThreadWorkQueue(const std::string& name)
    : m_thread([this, name] {
        nameThread(name);
        work();
      }) {}

ThreadWorkQueue::~ThreadWorkQueue() {
  std::deque<Task> dropped;  // ends outside the lock: what a task holds may do anything at its own end
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

}  // namespace mirvel
