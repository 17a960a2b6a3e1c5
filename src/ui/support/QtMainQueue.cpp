#include "ui/support/QtMainQueue.h"

#include <QThread>
#include <algorithm>
#include <thread>
#include <utility>

namespace mirvel::ui {

namespace {

using Milliseconds = std::chrono::milliseconds;

std::chrono::nanoseconds duration(double seconds) {
  constexpr double longest = 100.0 * 365 * 86400;
  if (!(seconds > 0)) return {};  // negative, zero or NaN
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
      std::chrono::duration<double>(std::min(seconds, longest)));
}

}  // namespace

QtMainQueue::QtMainQueue() {
  m_timer.setSingleShot(true);
  m_timer.setTimerType(Qt::PreciseTimer);
  QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { runDue(); });
}

QtMainQueue::~QtMainQueue() {
  std::multimap<SteadyClock::time_point, Task>
      dropped;  // destroyed after the lock is released: destroying a task's captures may call post()
  const std::lock_guard lock(m_mutex);
  m_isEnding = true;
  dropped.swap(m_tasks);
}

void QtMainQueue::post(Task task) {
  postAfter(0, std::move(task));
}

void QtMainQueue::postAfter(double seconds, Task task) {
  const auto due = SteadyClock::now() + duration(seconds);
  {
    const std::lock_guard lock(m_mutex);
    if (m_isEnding) return;
    const auto added = m_tasks.emplace(due, std::move(task));
    if (added != m_tasks.begin()) return;  // the timer covers an earlier task
  }
  if (QThread::currentThread() == m_timer.thread()) {
    arm();
  } else {
    QMetaObject::invokeMethod(
        &m_timer, [this] { arm(); }, Qt::QueuedConnection);
  }
}

void QtMainQueue::sleep(double seconds) {
  std::this_thread::sleep_for(duration(seconds));
}

/// Starts the timer for the earliest task.
void QtMainQueue::arm() {
  const auto due = earliest();
  if (!due) return m_timer.stop();
  constexpr Milliseconds longest = std::chrono::hours(24);  // on an early timeout the timer is started again
  const auto wait = std::chrono::ceil<Milliseconds>(*due - SteadyClock::now());
  m_timer.start(std::clamp(wait, Milliseconds(0), longest));
}

/// Runs the tasks that are due now. Tasks that they post wait for the next pass of the event loop, so that input is
/// handled in between.
void QtMainQueue::runDue() {
  const auto limit = SteadyClock::now();
  while (const Task task = takeDue(limit)) {
    arm();  // before the task, because it may run a nested event loop
    task();
  }
  arm();
}

MainQueue::Task QtMainQueue::takeDue(SteadyClock::time_point limit) {
  const std::lock_guard lock(m_mutex);
  if (m_tasks.empty() || m_tasks.begin()->first > limit) return {};
  return std::move(m_tasks.extract(m_tasks.begin()).mapped());
}

std::optional<QtMainQueue::SteadyClock::time_point> QtMainQueue::earliest() {
  const std::lock_guard lock(m_mutex);
  if (m_tasks.empty()) return std::nullopt;
  return m_tasks.begin()->first;
}

}  // namespace mirvel::ui
