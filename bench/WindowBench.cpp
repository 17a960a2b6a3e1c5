#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <QApplication>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "JobFolderOnDisk.h"
#include "core/support/Environment.h"
#include "ui/app/Application.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Runs the probe to its end.
bool runProbe(std::string argument) {
  std::string program = MIRVEL_START_PROBE;
  std::vector<char*> arguments{program.data()};
  if (!argument.empty()) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  pid_t process = 0;
  if (::posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) return false;
  int status = 0;
  return ::waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void startEmptyWindow(benchmark::State& state) {
  for (auto _ : state) {
    if (!runProbe({})) state.SkipWithError("the probe failed");
  }
}

void startFilledWindow(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    if (!runProbe(folder.roots().home.native())) state.SkipWithError("the probe failed");
  }
}

/// How long the main thread is held by a new catalogue: to publish it, and to draw the window anew.
void publication(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  ui::Application application(folder.roots(), {}, "en");
  Program& program = application.program();
  Clock::time_point start;
  double seconds = 0;
  bool isPublished = false;
  const Subscription loading = program.notifications.loadingChanged.subscribe([&] { start = Clock::now(); });
  const Subscription updated = program.notifications.jobsUpdated.subscribe([&] {
    application.window().repaint();
    seconds = secondsSince(start);
    isPublished = true;
  });
  const auto wait = [&] {
    for (isPublished = false; !isPublished;) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  };
  application.start();
  wait();
  for (auto _ : state) {
    std::ofstream(folder.paths().front(), std::ios::app) << '\n';
    program.fetcher.fetchJobs();
    wait();
    state.SetIterationTime(seconds);
  }
}

BENCHMARK(startEmptyWindow)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(startFilledWindow)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(publication)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

}  // namespace mirvel::bench

int main(int argc, char* argv[]) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
