#include <benchmark/benchmark.h>

#include <filesystem>

#include "core/files/ReadFile.h"
#include "core/jobfile/Plist.h"
#include "core/jobfile/RunString.h"
#include "core/lint/Lint.h"
#include "core/propertylist/Writer.h"
#include "support/HostileFiles.h"

namespace mirvel::bench {
namespace {

/// Job files of a megabyte that were designed to be slow. The bytes per second should be about equal for all of them,
/// and for each at both sizes.
void lintHostile(benchmark::State& state, const HostileFile& hostile) {
  const std::string file = hostile.make(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const auto findings = lint::lint(file, {});
    benchmark::DoNotOptimize(findings.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}

/// The largest job file that is published.
std::string largestJob() {
  std::string largest;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(MIRVEL_TESTDATA) / "corpus")) {
    const auto bytes = readFile(entry.path(), std::size_t{1} << 20U);
    if (bytes && bytes->size() > largest.size() && jobfile::Plist::readTolerantly(*bytes)) largest = *bytes;
  }
  return largest;
}

/// What a check costs the main thread when typing pauses: the snapshot of the edited record. A keystroke itself only
/// arms a timer.
void snapshotOfEdit(benchmark::State& state) {
  auto record = *jobfile::Plist::readTolerantly(largestJob());
  record.nice = 5;
  record.run += " -x";
  for (auto _ : state) benchmark::DoNotOptimize(jobfile::fileAsEdited(record));
}
BENCHMARK(snapshotOfEdit)->Unit(benchmark::kMicrosecond);

/// What it costs the background, except for the disk.
void checkOfEdit(benchmark::State& state) {
  auto record = *jobfile::Plist::readTolerantly(largestJob());
  record.nice = 99;
  const auto file = jobfile::fileAsEdited(record);
  for (auto _ : state) {
    const auto findings = lint::lint(*propertylist::writeXml(file), {}, Kind::userAgent);
    benchmark::DoNotOptimize(findings.data());
  }
}
BENCHMARK(checkOfEdit)->Unit(benchmark::kMicrosecond);

[[maybe_unused]] const bool areRegistered = [] {
  for (const HostileFile& hostile : hostileFiles) {
    benchmark::RegisterBenchmark((std::string("lintHostile/") + hostile.name).c_str(), lintHostile, hostile)
        ->Arg(1 << 18)
        ->Arg(1 << 20)
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace mirvel::bench
