#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <algorithm>

#include "JobFiles.h"
#include "core/catalogue/Launchd.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"

/// Compares reading and writing with libplist. Each pair does the same work on the same bytes, including the
/// destruction of the list.
namespace mirvel::bench {
namespace {

using Files = const JobFiles& (*)();
using List = std::vector<std::string>;

constexpr int rounds = 8;

/// Processes all items in batches of a hundred, each several times, so that the data is in the cache like a file that
/// was just read. Otherwise large sets would measure the memory bandwidth.
template <typename Items, typename Work>
void inBatches(const Items& items, Work work) {
  constexpr std::size_t batch = 100;
  for (std::size_t first = 0; first < items.size(); first += batch) {
    const std::size_t end = std::min(first + batch, items.size());
    for (int round = 0; round < rounds; ++round) {
      for (std::size_t i = first; i < end; ++i) work(items[i]);
    }
  }
}

void report(benchmark::State& state, std::size_t files, std::size_t bytes) {
  const std::int64_t times = rounds * static_cast<std::int64_t>(state.iterations());
  state.SetItemsProcessed(times * static_cast<std::int64_t>(files));
  state.SetBytesProcessed(times * static_cast<std::int64_t>(bytes));
}

void readOurs(benchmark::State& state, const List& lists, std::size_t bytes) {
  for (auto _ : state) {
    inBatches(lists, [&](const std::string& list) {
      const auto document = propertylist::read(list);
      if (!document) state.SkipWithError("a list wasn't read");
      benchmark::DoNotOptimize(document->root());
    });
  }
  report(state, lists.size(), bytes);
}

void readLibplist(benchmark::State& state, const List& lists, std::size_t bytes, bool isXml) {
  for (auto _ : state) {
    inBatches(lists, [&](const std::string& list) {
      plist_t root = nullptr;
      const auto size = static_cast<std::uint32_t>(list.size());
      isXml ? plist_from_xml(list.data(), size, &root) : plist_from_bin(list.data(), size, &root);
      if (!root) state.SkipWithError("a list wasn't read");
      plist_free(root);
    });
  }
  report(state, lists.size(), bytes);
}

void readXml(benchmark::State& state, Files files) {
  readOurs(state, files().xml, files().xmlBytes());
}
void readXmlLibplist(benchmark::State& state, Files files) {
  readLibplist(state, files().xml, files().xmlBytes(), true);
}
void readBinary(benchmark::State& state, Files files) {
  readOurs(state, files().binary, files().binaryBytes());
}
void readBinaryLibplist(benchmark::State& state, Files files) {
  readLibplist(state, files().binary, files().binaryBytes(), false);
}

void writeXml(benchmark::State& state, Files files) {
  std::vector<propertylist::Value> values;
  for (const std::string& xml : files().xml) values.push_back(propertylist::read(xml)->value());
  for (auto _ : state) {
    inBatches(values, [&](const propertylist::Value& value) {
      const auto xml = propertylist::writeXml(value);
      if (!xml) state.SkipWithError("a list wasn't written");
      benchmark::DoNotOptimize(xml->data());
    });
  }
  report(state, values.size(), files().xmlBytes());
}

void writeXmlLibplist(benchmark::State& state, Files files) {
  std::vector<plist_t> lists;
  for (const std::string& xml : files().xml) {
    plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &lists.emplace_back());
  }
  for (auto _ : state) {
    inBatches(lists, [&](const plist_t list) {
      char* xml = nullptr;
      std::uint32_t size = 0;
      plist_to_xml(list, &xml, &size);
      benchmark::DoNotOptimize(xml);
      plist_to_xml_free(xml);
    });
  }
  report(state, lists.size(), files().xmlBytes());
  for (const plist_t list : lists) plist_free(list);
}

/// From the bytes to a checked record. libplist has no counterpart, so it is compared with libplist's reading alone.
void decodeRecord(benchmark::State& state, Files files) {
  List jobs;
  std::size_t bytes = 0;
  for (const std::string& xml : files().xml) {
    if (!Launchd::Plist::readTolerantly(xml)) continue;
    jobs.push_back(xml);
    bytes += xml.size();
  }
  for (auto _ : state) {
    inBatches(jobs, [&](const std::string& job) {
      const auto record = Launchd::Plist::readTolerantly(job);
      if (!record) state.SkipWithError("a job wasn't decoded");
      benchmark::DoNotOptimize(record->name.data());
    });
  }
  report(state, jobs.size(), bytes);
}

/// Reads and copies to mutable values, for comparison with libraries whose trees are mutable.
void readXmlToValues(benchmark::State& state, Files files) {
  for (auto _ : state) {
    inBatches(files().xml, [&](const std::string& xml) {
      const propertylist::Value value = propertylist::read(xml)->value();
      benchmark::DoNotOptimize(value.type());
    });
  }
  report(state, files().xml.size(), files().xmlBytes());
}

BENCHMARK_CAPTURE(readXml, corpus, &corpus);
BENCHMARK_CAPTURE(readXmlLibplist, corpus, &corpus);
BENCHMARK_CAPTURE(readXml, generated, &generated);
BENCHMARK_CAPTURE(readXmlLibplist, generated, &generated);
BENCHMARK_CAPTURE(readBinary, corpus, &corpus);
BENCHMARK_CAPTURE(readBinaryLibplist, corpus, &corpus);
BENCHMARK_CAPTURE(readBinary, generated, &generated);
BENCHMARK_CAPTURE(readBinaryLibplist, generated, &generated);
BENCHMARK_CAPTURE(writeXml, corpus, &corpus);
BENCHMARK_CAPTURE(writeXmlLibplist, corpus, &corpus);
BENCHMARK_CAPTURE(writeXml, generated, &generated);
BENCHMARK_CAPTURE(writeXmlLibplist, generated, &generated);
BENCHMARK_CAPTURE(decodeRecord, corpus, &corpus);
BENCHMARK_CAPTURE(decodeRecord, generated, &generated);
BENCHMARK_CAPTURE(readXmlToValues, corpus, &corpus);
BENCHMARK_CAPTURE(readXmlToValues, generated, &generated);

}  // namespace
}  // namespace mirvel::bench
