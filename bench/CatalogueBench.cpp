#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unicode/coll.h>
#include <unicode/stsearch.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <map>
#include <memory>

#include "JobFolderOnDisk.h"
#include "core/base/ThreadWorkQueue.h"
#include "core/mainwindow/ListSort.h"
#include "core/runs/JobRuns.h"
#include "core/session/Catalogue.h"
#include "core/session/CurrentMode.h"

namespace mirvel::bench {

namespace {

const JobFolderOnDisk& folder(std::size_t count) {
  static std::map<std::size_t, std::unique_ptr<JobFolderOnDisk>> folders;
  auto& made = folders[count];
  if (!made) made = std::make_unique<JobFolderOnDisk>(count);
  return *made;
}

void report(benchmark::State& state, std::size_t items) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items));
}

/// The minimum that any program has to do with the files.
void bareRead(benchmark::State& state) {
  const auto& paths = folder(static_cast<std::size_t>(state.range(0))).paths();
  std::array<char, 65536> buffer;
  for (auto _ : state) {
    for (const std::string& path : paths) {
      const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
      benchmark::DoNotOptimize(::read(file, buffer.data(), buffer.size()));
      ::close(file);
    }
  }
  report(state, paths.size());
}

/// Destroys the result of a scan outside of the measured time, because the program does so only when the next result is
/// published.
void endOfScan(benchmark::State& state, Jobs& jobs, std::size_t count) {
  state.PauseTiming();
  if (jobs.size() != count) state.SkipWithError("jobs are missing");
  jobs.clear();
  // After freeing ten thousand jobs, malloc consolidates its free lists on the next large allocation.
  benchmark::DoNotOptimize(std::make_unique<char[]>(std::size_t{1} << 20U));
  state.ResumeTiming();
}

void coldScan(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  Scanner scanner(folder(count));
  growHeapOfThisThread();  // as in the program's scan threads
  for (auto _ : state) {
    Jobs jobs = scanner.coldScan();
    endOfScan(state, jobs, count);
  }
  report(state, count);
}

void unchangedScan(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  Scanner scanner(folder(count));
  (void)scanner.coldScan();
  for (auto _ : state) {
    Jobs jobs = scanner.rescan();
    endOfScan(state, jobs, count);
  }
  report(state, count);
}

constexpr std::size_t many = 10'000;
constexpr std::size_t textSize = 1024;

/// Ten thousand jobs with a text of 1 KiB each.
const Jobs& manyJobs() {
  static const Jobs jobs = [] {
    Jobs made = Scanner(folder(many)).coldScan();
    for (const auto& job : made) {
      std::string text(job->textContent.view());
      while (text.size() < textSize) text += text.substr(0, textSize / 2) + ' ';
      text.resize(textSize);
      job->textContent = std::move(text);
    }
    return made;
  }();
  return jobs;
}

void filterKeystroke(benchmark::State& state) {
  const Jobs& jobs = manyJobs();
  for (auto _ : state) benchmark::DoNotOptimize(filtered(jobs, "zzyzx"));
  report(state, jobs.size());
}

void filterKeystrokeIcu(benchmark::State& state) {
  const Jobs& jobs = manyJobs();
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale("en"), status));
  collator->setStrength(icu::Collator::PRIMARY);
  std::vector<icu::UnicodeString> texts;
  for (const auto& job : jobs) texts.push_back(icu::UnicodeString::fromUTF8(std::string(job->textContent.view())));
  icu::StringSearch search(icu::UnicodeString("zzyzx"), texts.front(),
                           dynamic_cast<icu::RuleBasedCollator*>(collator.get()), nullptr, status);
  for (auto _ : state) {
    for (const auto& text : texts) {
      search.setText(text, status);
      benchmark::DoNotOptimize(search.first(status));
    }
  }
  if (U_FAILURE(status)) state.SkipWithError("ICU can't search");
  report(state, jobs.size());
}

void repeatedSort(benchmark::State& state) {
  const Collator collator("en");
  const Jobs& jobs = manyJobs();
  Catalogue catalogue;
  const JobRuns runs(catalogue);
  for (auto _ : state) {
    Jobs sorted = jobs;
    sortJobs(sorted, ListColumn::Summary, true, collator, runs);
    benchmark::DoNotOptimize(sorted.data());
  }
  report(state, jobs.size());
}

void repeatedSortIcu(benchmark::State& state) {
  const Collator collator("en");
  const Jobs& jobs = manyJobs();
  for (auto _ : state) {
    Jobs sorted = jobs;
    std::stable_sort(sorted.begin(), sorted.end(), [&](const auto& a, const auto& b) {
      return collator.localizedStandardCompare(a->summary, b->summary) < 0;
    });
    benchmark::DoNotOptimize(sorted.data());
  }
  report(state, jobs.size());
}

/// Measures memory, not time: the heap used by ten thousand jobs, apart from the texts of their files.
void memoryPerJob(benchmark::State& state) {
  double bytes = 0;
  for (auto _ : state) {
    Scanner scanner(folder(many));
    const auto before = ::mallinfo2().uordblks;
    Jobs jobs = scanner.coldScan();
    std::size_t text = 0;
    for (const auto& job : jobs) text += job->textContent.view().size();
    bytes = static_cast<double>(::mallinfo2().uordblks - before - text) / static_cast<double>(jobs.size());
  }
  state.counters["bytesPerJob"] = bytes;
}

BENCHMARK(bareRead)->Arg(100)->Arg(700)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(coldScan)->Arg(100)->Arg(700)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(unchangedScan)->Arg(100)->Arg(700)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(filterKeystroke)->Unit(benchmark::kMicrosecond);
BENCHMARK(filterKeystrokeIcu)->Unit(benchmark::kMicrosecond);
BENCHMARK(repeatedSort)->Unit(benchmark::kMicrosecond);
BENCHMARK(repeatedSortIcu)->Unit(benchmark::kMicrosecond);
BENCHMARK(memoryPerJob)->Iterations(1);

}  // namespace

}  // namespace mirvel::bench
