#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "JobFolderOnDisk.h"
#include "core/catalogue/Launchd.h"
#include "core/mainwindow/Timeline.h"
#include "core/mainwindow/TimelineTexts.h"

namespace mirvel::bench {

namespace {

using namespace std::chrono;

constexpr sys_seconds now = sys_days(2026y / 11 / 21) + 9h + 41min;  // a month of 30 days
constexpr const char* zone = "Europe/Berlin";

std::string key(const char* name, std::uint64_t number) {
  return "<key>" + std::string(name) + "</key><integer>" + std::to_string(number) + "</integer>";
}

std::string hourly(std::mt19937& random) {
  return key("Minute", random() % 60);
}

/// Schedules as people write them: daily, weekly or monthly, and a few hourly ones.
std::string mixed(std::mt19937& random) {
  const auto form = random() % 10;
  if (form == 0) return hourly(random);
  const std::string time = hourly(random) + key("Hour", random() % 24);
  if (form < 6) return time;
  return time + (form < 8 ? key("Weekday", random() % 7) : key("Day", 1 + random() % 31));
}

Jobs jobs(std::size_t count, std::string (*interval)(std::mt19937&)) {
  const JobFolderOnDisk folder(1);
  const Foundation foundation(folder.roots(), {}, {}, "en");
  const ScanSettings settings = foundation.scanSettings();
  SilentConsole console;
  std::mt19937 random(3);
  Jobs made;
  while (made.size() < count) {
    const std::string label = "org.example.job" + std::to_string(made.size());
    const std::string text = "<plist version=\"1.0\"><dict><key>Label</key><string>" + label +
                             "</string><key>StartCalendarInterval</key><dict>" + interval(random) +
                             "</dict></dict></plist>";
    made.push_back(Launchd::read(text, URL::file("/" + label + ".plist"), Kind::userAgent, settings, console));
  }
  return made;
}

void build(benchmark::State& state, const Jobs& scheduled) {
  const Localize localize("en");
  const TimelineTexts texts(localize, zone);
  std::size_t rows = 0;
  for (auto _ : state) {
    const TimelineArray timeline = mirvel::buildTimeline(scheduled, now, texts);
    rows = timeline.rows().size();
    benchmark::DoNotOptimize(timeline.rows().data());
  }
  state.counters["rows"] = static_cast<double>(rows);
}

void buildTimeline(benchmark::State& state) {
  build(state, jobs(static_cast<std::size_t>(state.range(0)), mixed));
}

void buildTimelineHourly(benchmark::State& state) {
  build(state, jobs(static_cast<std::size_t>(state.range(0)), hourly));
}

void sortNumbers(benchmark::State& state) {
  std::mt19937_64 random(4);
  std::vector<std::int64_t> numbers(static_cast<std::size_t>(state.range(0)));
  for (auto& number : numbers) number = static_cast<std::int64_t>(random());
  for (auto _ : state) {
    state.PauseTiming();
    auto sorted = numbers;
    state.ResumeTiming();
    std::sort(sorted.begin(), sorted.end());
    benchmark::DoNotOptimize(sorted.data());
  }
}

BENCHMARK(buildTimeline)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(buildTimelineHourly)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(sortNumbers)->Arg(720000)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace mirvel::bench
