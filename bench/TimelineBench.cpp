#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "JobFolderOnDisk.h"
#include "core/catalogue/Launchd.h"
#include "core/mainwindow/Timeline.h"
#include "core/mainwindow/TimelineTexts.h"
#include "core/runs/JobRuns.h"
#include "core/session/Catalogue.h"
#include "support/FakeRunSource.h"

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
    const TimelineArray timeline(scheduled, {}, now, texts, {});
    rows = timeline.count();
    benchmark::DoNotOptimize(rows);
  }
  state.counters["rows"] = static_cast<double>(rows);
}

void buildTimeline(benchmark::State& state) {
  build(state, jobs(static_cast<std::size_t>(state.range(0)), mixed));
}

void buildTimelineHourly(benchmark::State& state) {
  build(state, jobs(static_cast<std::size_t>(state.range(0)), hourly));
}

/// 100 runs in the past month, a few of them failed. With `more`, the oldest run is forgotten and a new one begins.
JobReport pastOf(const Job& job, bool more = false) {
  std::mt19937 random(static_cast<std::uint32_t>(std::hash<std::string>()(job.name)));
  constexpr double month = 30 * 86400.0;
  const auto end = static_cast<double>(now.time_since_epoch().count());
  const auto runs = static_cast<double>(JobReport::mostRuns);
  const double pause = month / (runs + 1), offset = static_cast<double>(random() % 1000) / 1000;
  JobReport report{.label = job.name, .path = job.url.text(), .isLoaded = true};
  for (double run = more ? 1 : 0; run < runs; ++run) {
    const double start = end - month + (run + offset) * pause;
    report.runs.push_back(testdata::exitedRun(start, random() % 50 == 0 ? 1 : 0));
  }
  return more ? testdata::running(std::move(report), end - 1) : report;
}

/// Jobs with a past, and the timeline that shows them.
class JobsWithPast {
 public:
  explicit JobsWithPast(std::size_t count) : m_jobs(jobs(count, mixed)) {
    m_catalogue.publish(m_jobs);
    std::vector<JobReport> all;
    for (const auto& job : m_jobs) all.push_back(pastOf(*job));
    m_reports.deliverReports(std::move(all));
  }

  TimelineArray timeline() {
    return {m_jobs, [this](const Job& job) { return m_runs.report(job); }, now, m_texts, {}};
  }
  /// Starts or ends the run of a job, and applies that to the timeline.
  void change(TimelineArray& timeline, std::size_t& changes) {
    m_isRunning = !m_isRunning;
    m_reports.deliverReports({pastOf(*m_jobs.front(), m_isRunning)});
    const TimelineArray::Report report{0, m_runs.report(*m_jobs.front())};
    timeline.setReports({&report, 1}, {}, [&](const auto&) { ++changes; });
  }

 private:
  const Localize m_localize{"en"};
  const TimelineTexts m_texts{m_localize, zone};
  const Jobs m_jobs;
  Catalogue m_catalogue;
  JobRuns m_runs{m_catalogue};
  testdata::FakeRunSource& m_reports = testdata::FakeRunSource::in(m_runs);
  bool m_isRunning = false;
};

void buildTimelineWithPast(benchmark::State& state) {
  JobsWithPast jobs(static_cast<std::size_t>(state.range(0)));
  std::size_t rows = 0;
  for (auto _ : state) {
    const TimelineArray timeline = jobs.timeline();
    rows = timeline.count();
    benchmark::DoNotOptimize(rows);
  }
  state.counters["rows"] = static_cast<double>(rows);
}

void changeOneJobOfTimeline(benchmark::State& state) {
  JobsWithPast jobs(static_cast<std::size_t>(state.range(0)));
  TimelineArray timeline = jobs.timeline();
  std::size_t changes = 0;
  for (auto _ : state) jobs.change(timeline, changes);
  state.counters["changes"] = static_cast<double>(changes) / static_cast<double>(state.iterations());
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
BENCHMARK(buildTimelineWithPast)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(changeOneJobOfTimeline)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(sortNumbers)->Arg(720000)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace mirvel::bench
