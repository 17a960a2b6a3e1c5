#include <benchmark/benchmark.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "JobFolderOnDisk.h"
#include "core/process/Environment.h"
#include "core/process/FileDescriptor.h"
#include "ui/app/Application.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Runs the probe and returns the seconds from its start until its window was drawn.
std::optional<double> secondsUntilDrawn(std::string argument) {
  std::string program = MIRVEL_START_PROBE;
  std::vector<char*> arguments{program.data()};
  if (!argument.empty()) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  const Pipe drawn = Pipe::make();
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, drawn.write.number(), STDOUT_FILENO);
  const auto start = Clock::now();
  pid_t process = 0;
  const bool isSpawned = ::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ) == 0;
  ::posix_spawn_file_actions_destroy(&actions);
  if (!isSpawned) return std::nullopt;
  pollfd waiting{.fd = drawn.read.number(), .events = POLLIN, .revents = 0};
  constexpr int patience = 20'000;
  const bool isDrawn = ::poll(&waiting, 1, patience) == 1;
  const double seconds = secondsSince(start);
  if (!isDrawn) ::kill(process, SIGKILL);
  int status = 0;
  const bool isWell = ::waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return isDrawn && isWell ? std::optional(seconds) : std::nullopt;
}

void measureStart(benchmark::State& state, const std::string& argument) {
  for (auto _ : state) {
    const auto seconds = secondsUntilDrawn(argument);
    if (!seconds) state.SkipWithError("the probe failed");
    state.SetIterationTime(seconds.value_or(0));
  }
}

void startEmptyWindow(benchmark::State& state) {
  measureStart(state, {});
}

void startFilledWindow(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  measureStart(state, folder.roots().home.native());
}

/// The time for which the main thread is blocked by a new catalogue: publishing it and redrawing the window.
void publication(benchmark::State& state) {
  const JobFolderOnDisk folder(static_cast<std::size_t>(state.range(0)));
  ui::Application application(folder.roots(), {}, "en");
  Program& program = application.program();
  (void)program.foundation.defaults.setAutomaticallyCheckForUpdate(false);
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
    isPublished = false;
    while (!isPublished) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
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

BENCHMARK(startEmptyWindow)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(startFilledWindow)->Arg(1000)->Unit(benchmark::kMillisecond)->UseManualTime();
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
