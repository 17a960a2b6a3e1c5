#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <chrono>

#include "JobFolderOnDisk.h"
#include "ui/app/Application.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// The program with a filled window.
class FilledWindow {
 public:
  explicit FilledWindow(const Roots& roots) : m_application(roots, {}, "en") {
    (void)program().foundation.defaults.setAutomaticallyCheckForUpdate(false);
    m_application.start();
    settle();
  }

  /// The seconds for which the main thread is blocked while it creates the view, sets the jobs, lays them out and draws
  /// them.
  double secondsToSwitch(Mode mode) {
    const auto start = Clock::now();
    program().mainWindow.switchMode(mode);
    m_application.window().repaint();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    settle();
    return seconds;
  }

 private:
  Program& program() { return m_application.program(); }
  /// Runs the event loop until the scan that every change of mode starts has finished.
  void settle() {
    do {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    } while (program().scanning.isBusy());
  }

  ui::Application m_application;
};

void switchTo(benchmark::State& state, Mode mode) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  FilledWindow window(folder.roots());
  const Mode other = mode == Mode::List ? Mode::Grid : Mode::List;
  for (auto _ : state) {
    window.secondsToSwitch(other);
    state.SetIterationTime(window.secondsToSwitch(mode));
  }
}

BENCHMARK_CAPTURE(switchTo, grid, Mode::Grid)
    ->Arg(10000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(switchTo, tree, Mode::Tree)
    ->Arg(10000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(switchTo, list, Mode::List)
    ->Arg(10000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();
BENCHMARK_CAPTURE(switchTo, timeline, Mode::Timeline)
    ->Arg(10000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

}  // namespace

}  // namespace mirvel::bench
