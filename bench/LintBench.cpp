#include <benchmark/benchmark.h>

#include "core/lint/Lint.h"
#include "support/HostileFiles.h"

/// Job files of a megabyte that were designed to be slow. The bytes per second should be about equal for all of them,
/// and for each at both sizes.
namespace mirvel::bench {
namespace {

void lintHostile(benchmark::State& state, const HostileFile& hostile) {
  const std::string file = hostile.make(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const auto findings = lint::lint(file, {});
    benchmark::DoNotOptimize(findings.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}

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
