#pragma once

#include <map>
#include <utility>
#include <vector>

#include "core/base/ThreadWorkQueue.h"
#include "core/ports/Clock.h"
#include "core/ports/MainQueue.h"

namespace mirvel::testdata {

/// A main queue whose time advances only by calls of the test.
class VirtualQueue final : public MainQueue {
 public:
  void post(Task task) override { postAfter(0, std::move(task)); }
  void postAfter(double seconds, Task task) override { m_tasks.emplace(m_now + seconds, std::move(task)); }
  void sleep(double seconds) override { m_now += seconds; }

  double now() const { return m_now; }

  /// Runs all tasks that are due now, including those that they post.
  void runDue() { runFor(0); }
  /// Advances the time, and runs each task when it falls due.
  void runFor(double seconds) {
    const double end = m_now + seconds;
    while (!m_tasks.empty() && m_tasks.begin()->first <= end) {
      const auto next = m_tasks.begin();
      const Task task = std::move(next->second);
      if (next->first > m_now) m_now = next->first;
      m_tasks.erase(next);
      task();
    }
    if (end > m_now) m_now = end;
  }

 private:
  double m_now = 0;
  std::multimap<double, Task> m_tasks;  // a multimap keeps tasks with equal times in the order of posting
};

/// A work queue that runs its tasks when the test says so.
class ManualWorkQueue final : public WorkQueue {
 public:
  void add(Task task) override { m_tasks.push_back(std::move(task)); }

  std::size_t count() const { return m_tasks.size(); }
  void runAll() {
    const auto tasks = std::exchange(m_tasks, {});
    for (const Task& task : tasks) task();
  }

 private:
  std::vector<Task> m_tasks;
};

class FakeClock final : public Clock {
 public:
  double now = 1'000'000;

  double secondsSince1970() const override { return now; }
};

}  // namespace mirvel::testdata
