#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>

#include "core/ports/MainQueue.h"

namespace mirvel::ui {

/// Implements the main queue with the application's event loop. Tasks run in the order of their due times, and those of
/// equal times in the order of posting; also while a modal dialog opened by a task is running.
///
/// Must be created and destroyed on the main thread, and outlive all threads that post. Pending tasks are dropped on
/// destruction.
class QtMainQueue final : public MainQueue {
 public:
  QtMainQueue();
  ~QtMainQueue() override;

  void post(Task task) override;
  void postAfter(double seconds, Task task) override;
  void sleep(double seconds) override;

 private:
  using SteadyClock = std::chrono::steady_clock;

  void arm();
  void runDue();
  Task takeDue(SteadyClock::time_point limit);
  std::optional<SteadyClock::time_point> earliest();

  QTimer m_timer;
  std::mutex m_mutex;
  std::multimap<SteadyClock::time_point, Task> m_tasks;
  bool m_isEnding = false;
};

}  // namespace mirvel::ui
