#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <utility>
#include <vector>

#include "JobFolderOnDisk.h"
#include "support/FakeRunSource.h"
#include "ui/app/Application.h"
#include "ui/mainwindow/ListModeView.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

void pauseWithEvents(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec();
}

/// The program with a filled window.
class FilledWindow {
 public:
  explicit FilledWindow(const Roots& roots)
      : m_application(roots, {}, "en"), m_reports(testdata::FakeRunSource::in(program().runs)) {
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

  /// Reports 100 runs in the past month for each job.
  void addPast() {
    std::vector<JobReport> all;
    for (const auto& job : program().catalogue.jobs()) all.push_back(pastOf(*job));
    m_reports.deliverReports(std::move(all));
  }
  void sortListByLastRun() {
    secondsToSwitch(Mode::List);
    m_application.window().listMode().mode().setSortDescriptor({"lastRun", false});
    settle();
  }
  /// The seconds for which the main thread is blocked by one job that starts or ends, with what is drawn again.
  double secondsToChangeState() {
    JobReport report = pastOf(*program().catalogue.jobs().front());
    m_isRunning = !m_isRunning;
    report.runs.erase(report.runs.begin());
    const double start = report.runs.back().start + 3;
    report = m_isRunning ? testdata::running(std::move(report), start) : report;
    if (!m_isRunning) report.runs.push_back(testdata::exitedRun(start));
    const auto begin = Clock::now();
    m_reports.deliverReports({std::move(report)});
    m_application.window().repaint();
    return std::chrono::duration<double>(Clock::now() - begin).count();
  }

 private:
  /// Always the same for a job: what is over doesn't change.
  JobReport pastOf(const Job& job) const {
    constexpr double month = 30 * 86400.0, pause = month / JobReport::mostRuns;
    const double end = m_begin - 60 - static_cast<double>(job.name.size());
    std::vector<RunReport> runs;
    for (double age = month; age > pause / 2; age -= pause) runs.push_back(testdata::exitedRun(end - age));
    return testdata::reportOf(job.name, job.url.path(), std::move(runs));
  }
  Program& program() { return m_application.program(); }
  /// Runs the event loop until the scan that every change of mode starts has finished.
  void settle() {
    do {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    } while (program().scanning.isBusy());
  }

  ui::Application m_application;
  testdata::FakeRunSource& m_reports;
  const double m_begin = SystemClock().secondsSince1970();
  bool m_isRunning = false;
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

void openTimelineWithPast(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  FilledWindow window(folder.roots());
  for (auto _ : state) {
    window.secondsToSwitch(Mode::List);
    window.addPast();  // so that the rows of the previous round are outdated
    state.SetIterationTime(window.secondsToSwitch(Mode::Timeline));
  }
}

void changeStateInTimeline(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  FilledWindow window(folder.roots());
  window.addPast();
  window.secondsToSwitch(Mode::Timeline);
  for (auto _ : state) state.SetIterationTime(window.secondsToChangeState());
}

/// The list is sorted by the last runs, at most once a second.
void changeStateInList(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  FilledWindow window(folder.roots());
  window.addPast();
  window.sortListByLastRun();
  for (auto _ : state) {
    pauseWithEvents(std::chrono::milliseconds(1100));
    state.SetIterationTime(window.secondsToChangeState());
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

BENCHMARK(openTimelineWithPast)->Arg(10000)->Iterations(5)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(changeStateInTimeline)->Arg(10000)->Iterations(50)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(changeStateInList)->Arg(10000)->Iterations(2)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

}  // namespace mirvel::bench
