#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>

#include "JobFolderOnDisk.h"
#include "core/documents/ScriptFile.h"
#include "ui/app/Application.h"

namespace mirvel::bench {

namespace {

using Clock = std::chrono::steady_clock;

/// Writes a script of the largest size that can be opened.
std::filesystem::path writeLargestScript(const JobFolderOnDisk& folder) {
  const std::string line = "find \"$folder\" -type f -mtime +5 -print # räumt größere „alte“ Dateien auf\n";
  std::string text = "#!/bin/sh\n";
  text.reserve(largestScript);
  while (text.size() + line.size() <= largestScript) text += line;
  const auto path = std::filesystem::path(folder.paths().front()).parent_path() / "script.sh";
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

/// Opens the script in the window of a started program, until it can be edited. Returns the longest time for which the
/// event loop was blocked, in seconds.
double longestBlock(Program& program, const std::filesystem::path& script) {
  double longest = 0;
  const auto step = [&](const auto& work) {
    const auto start = Clock::now();
    work();
    longest = std::max(longest, std::chrono::duration<double>(Clock::now() - start).count());
  };
  const auto& documents = program.documents.documents();
  step([&] { program.documents.open(URL::file(script)); });
  while (documents.empty() || documents.front()->isLoading()) step([] { QCoreApplication::processEvents(); });
  for (int i = 0; i < 10; ++i) step([] { QCoreApplication::processEvents(); });  // what is drawn afterwards
  return longest;
}

void openLargestScript(benchmark::State& state) {
  const JobFolderOnDisk folder(1);
  const auto script = writeLargestScript(folder);
  for (auto _ : state) {
    ui::Application application(folder.roots(), {}, "en");
    Program& program = application.program();
    (void)program.foundation.defaults.setAutomaticallyCheckForUpdate(false);
    application.start();
    for (int i = 0; i < 100; ++i) QCoreApplication::processEvents();
    state.SetIterationTime(longestBlock(program, script));
    program.documents.closeAll(false);
  }
}

BENCHMARK(openLargestScript)->Iterations(3)->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace

}  // namespace mirvel::bench
