#include <benchmark/benchmark.h>

#include <string>

#include "core/locale/Collator.h"
#include "core/locale/Localize.h"
#include "core/runs/LogRows.h"

// The log sheet with 100 000 lines. Filtering and sorting are what a keystroke and a click cost.

namespace mirvel {
namespace {

/// Lines of about 90 bytes. Of every `accented` lines, one isn't ASCII; 0: all are.
messages::LogLines manyLines(std::int64_t accented) {
  messages::LogLines log;
  constexpr std::int64_t count = 100'000;
  for (std::int64_t i = 1; i <= count; ++i) {
    std::string text = "worker " + std::to_string(i * 7919 % count) + ": processed the item in the queue of the ";
    text += accented > 0 && i % accented == 0 ? "Büro in Zürich" : "office in London";
    log.lines.push_back({.number = i, .seconds = 1.7e9 + static_cast<double>(i) / 1000, .message = std::move(text)});
  }
  return log;
}

struct Log {
  explicit Log(std::int64_t accented) : lines(manyLines(accented)) { (void)rows.assign(lines); }

  const Localize localize{"en"};
  const Collator collator{"en"};
  const messages::LogLines lines;
  LogRows rows{localize, collator};
};

void show(benchmark::State& state) {
  Log log(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(log.rows.assign(log.lines));
}
BENCHMARK(show)->Name("log/show")->Arg(0)->Arg(10)->Unit(benchmark::kMillisecond);

void filterFirst(benchmark::State& state) {
  Log log(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    (void)log.rows.setFilter("");
    (void)log.rows.assign(log.lines);
    state.ResumeTiming();
    benchmark::DoNotOptimize(log.rows.setFilter("LONDON"));
  }
}
BENCHMARK(filterFirst)->Name("log/filter/first key")->Arg(0)->Arg(10)->Unit(benchmark::kMillisecond);

void filterNext(benchmark::State& state) {
  Log log(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(log.rows.setFilter("LONDON"));
    benchmark::DoNotOptimize(log.rows.setFilter("LOND"));
  }
}
BENCHMARK(filterNext)->Name("log/filter/two next keys")->Arg(0)->Arg(10)->Unit(benchmark::kMillisecond);

void sort(benchmark::State& state) {
  Log log(state.range(1));
  const auto column = static_cast<LogColumn>(state.range(0));
  bool isAscending = false;
  for (auto _ : state) {
    benchmark::DoNotOptimize(log.rows.setOrder(LogOrder{column, isAscending}));
    isAscending = !isAscending;
  }
}
BENCHMARK(sort)
    ->Name("log/sort")
    ->Args({0, 0})
    ->Args({1, 0})
    ->Args({1, 10})
    ->Args({1, 1})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mirvel
