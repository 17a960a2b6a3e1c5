#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>

#include "core/ports/MainQueue.h"

namespace mirvel::ui {

/// The event loop of the application as the main queue. Tasks run in the order of their times, those of equal times in
/// the order in which they were posted; also below a modal dialog that a task opens.
///
/// Made and destroyed on the main thread, after the last thread that posts has ended; what is pending then is dropped.
class QtMainQueue final : public MainQueue {
 public:
  QtMainQueue();
  ~QtMainQueue() override;

  void post(Task task) override;
  void postAfter(double seconds, Task task) override;
  void sleep(double seconds) override;

 private:
  using Clock = std::chrono::steady_clock;

  void arm();
  void runDue();
  Task takeDue(Clock::time_point limit);
  std::optional<Clock::time_point> earliest();

  QTimer m_timer;
  std::mutex m_mutex;
  std::multimap<Clock::time_point, Task> m_tasks;
  bool m_isEnding = false;
};

}  // namespace mirvel::ui
