#include "helpers/host/JobLog.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>

#include "support/TestData.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using messages::LogLine;
using testing::ElementsAre;
using testing::IsEmpty;

// 2023-11-14T22:13:20Z
constexpr LogMoment start{1'700'000'000s};

class JobLogTest : public testing::Test {
 protected:
  messages::LogLines lines(const std::string& label, const LogRange& range = {}) const {
    return linesOfBlocks(StoredLog(folder.path(), label).blocks(range), range);
  }
  /// "12 message" of each line.
  std::vector<std::string> texts(const std::string& label, const LogRange& range = {}) const {
    std::vector<std::string> result;
    for (const auto& line : lines(label, range).lines)
      result.push_back(std::to_string(line.number) + ' ' + line.message);
    return result;
  }
  JobLog next() {
    return JobLog(folder.path(), [this] { return now; });
  }
  std::uintmax_t sizeOf(const fs::path& half) const {
    const fs::path older = StoredLog::olderHalf(half);
    return fs::file_size(half) + (fs::exists(older) ? fs::file_size(older) : 0);
  }

  testdata::TemporaryFolder folder;
  LogMoment now = start;
  JobLog log = next();
};

TEST_F(JobLogTest, OutputAndEventsShareACounterAndAFormForTheTerminal) {
  ASSERT_TRUE(log.addEvent("org.a", "started"));
  now += 250001us;
  ASSERT_TRUE(log.addOutput("org.a", {"first", "", std::string("#1 |\0\xff\r", 8)}));
  now += 1h;
  ASSERT_TRUE(log.addEvent("org.a", "exited\nwith 0"));
  ASSERT_TRUE(log.addOutput("org.a.b", {"of another label"}));
  const StoredLog files(folder.path(), "org.a");
  EXPECT_EQ(testdata::bytes(files.output()),
            "#2 2023-11-14T22:13:20.250001Z output\n|first\n|\n|" + std::string("#1 |\0\xff\r", 8) + "\n");
  EXPECT_EQ(testdata::bytes(files.events()),
            "#1 2023-11-14T22:13:20.000000Z event\n|started\n#5 2023-11-14T23:13:20.250001Z event\n|exited with 0\n");
  EXPECT_THAT(lines("org.a").lines,
              ElementsAre(LogLine{1, 1'700'000'000, LogLine::Kind::Event, "started"},
                          LogLine{2, 1'700'000'000.250001, LogLine::Kind::Output, "first"},
                          LogLine{3, 1'700'000'000.250001, LogLine::Kind::Output, ""},
                          LogLine{4, 1'700'000'000.250001, LogLine::Kind::Output, std::string("#1 |\0\xff\r", 8)},
                          LogLine{5, 1'700'003'600.250001, LogLine::Kind::Event, "exited with 0"}));
}

TEST_F(JobLogTest, FindsTheLinesOfAPeriodOrAfterANumberAndCountsTheMissing) {
  ASSERT_TRUE(log.addOutput("a", {"1", "2"}));
  now += 10s;
  ASSERT_TRUE(log.addDropped("a", 5, "[dropped]"));
  now += 10s;
  ASSERT_TRUE(log.addEvent("a", "9"));
  const struct {
    LogRange range;
    std::vector<std::string> lines;
    std::int64_t dropped;
  } rows[] = {
      {{.since = start}, {"1 1", "2 2", "8 [dropped]", "9 9"}, 5},
      {{.since = start + 1us}, {"8 [dropped]", "9 9"}, 5},
      {{.since = start + 10s + 1us}, {"9 9"}, 0},
      {{.since = start + 1h}, {}, 0},
      {{.after = 0}, {"1 1", "2 2", "8 [dropped]", "9 9"}, 5},
      {{.after = 1}, {"2 2", "8 [dropped]", "9 9"}, 5},
      {{.after = 4}, {"8 [dropped]", "9 9"}, 3},
      {{.since = start + 1h, .after = 8}, {"9 9"}, 0},
      {{.after = 9}, {}, 0},
      {{.after = 100}, {}, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(texts("a", row.range), row.lines);
    EXPECT_EQ(lines("a", row.range).dropped, row.dropped) << row.range.after.value_or(-1);
  }
  EXPECT_THAT(texts("b"), IsEmpty());
}

TEST_F(JobLogTest, TheCounterContinuesAfterEveryPrefixOfAFile) {
  ASSERT_TRUE(log.addEvent("a", "started"));
  ASSERT_TRUE(log.addOutput("a", {"two", "three"}));
  now += 1s;
  ASSERT_TRUE(log.addOutput("a", {"four"}));
  const StoredLog files(folder.path(), "a");
  const std::string whole = testdata::bytes(files.output());
  const std::vector<std::string> all = {"1 started", "2 two", "3 three", "4 four"};
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    std::ofstream(files.output(), std::ios::trunc) << whole.substr(0, size);
    std::vector<std::string> expected = texts("a");
    ASSERT_LE(expected.size(), all.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), all.begin()));
    JobLog after = next();
    EXPECT_EQ(after.newest("a"), std::ssize(expected));
    ASSERT_TRUE(after.addOutput("a", {"next"}));
    expected.push_back(std::to_string(expected.size() + 1) + " next");
    EXPECT_EQ(texts("a"), expected) << size;
  }
}

TEST_F(JobLogTest, EachHalfIsFilledToTheLastByte) {
  constexpr std::size_t half = JobLog::outputSize / 2;
  const StoredLog files(folder.path(), "a");
  const std::string line(1000, 'x');
  while (!fs::exists(files.output()) || fs::file_size(files.output()) + 3000 < half) {
    ASSERT_TRUE(log.addOutput("a", {line}));
  }
  const std::size_t rest = half - fs::file_size(files.output());
  const std::int64_t number = log.newest("a") + 1;
  const std::size_t head = LogHead{.number = number, .time = start}.text().size();
  ASSERT_TRUE(log.addOutput("a", {std::string(rest - head - 2, 'y')}));
  EXPECT_EQ(fs::file_size(files.output()), half);
  EXPECT_FALSE(fs::exists(StoredLog::olderHalf(files.output())));
  now += 1s;
  ASSERT_TRUE(log.addOutput("a", {""}));
  EXPECT_EQ(fs::file_size(StoredLog::olderHalf(files.output())), half);
  EXPECT_EQ(testdata::bytes(files.output()), "#1 2023-11-14T22:13:20.000000Z output\n#" + std::to_string(number + 1) +
                                                 " 2023-11-14T22:13:21.000000Z output\n|\n");
  const auto found = lines("a");
  EXPECT_EQ(std::ssize(found.lines), number + 1);
  EXPECT_EQ(found.dropped, 0);
  EXPECT_EQ(next().newest("a"), number + 1);
}

TEST_F(JobLogTest, OutputNeverDisplacesEventsAndWhatIsGoneIsCounted) {
  constexpr int runs = 200;
  const std::vector<std::string> output(500, std::string(100, 'x'));
  for (int run = 0; run < runs; ++run) {
    now += 1min;
    ASSERT_TRUE(log.addEvent("a", "started"));
    ASSERT_TRUE(log.addOutput("a", output));
    ASSERT_TRUE(log.addEvent("a", "exited with 0"));
  }
  const StoredLog files(folder.path(), "a");
  EXPECT_LE(sizeOf(files.output()), JobLog::outputSize);
  EXPECT_LE(sizeOf(files.events()), JobLog::eventsSize);
  const auto found = lines("a");
  const auto events = std::count_if(found.lines.begin(), found.lines.end(),
                                    [](const auto& line) { return line.kind == LogLine::Kind::Event; });
  EXPECT_EQ(events, 2 * runs);
  EXPECT_GT(found.lines.size(), 20'000U);
  EXPECT_EQ(found.dropped + std::ssize(found.lines), runs * 502);
  const auto lastHalf = lines("a", {.since = start + (runs / 2 + 1) * 1min});
  EXPECT_EQ(lastHalf.dropped + std::ssize(lastHalf.lines), runs / 2 * 502) << "the earlier runs don't count";
}

TEST_F(JobLogTest, EventsAreBoundedAndKeepTheNewest) {
  const std::string text(JobLog::longestEvent + 5000, 'x');
  for (int i = 0; i < 1000; ++i) ASSERT_TRUE(log.addEvent("a", std::to_string(i) + ' ' + text));
  EXPECT_LE(sizeOf(StoredLog(folder.path(), "a").events()), JobLog::eventsSize);
  const auto found = lines("a").lines;
  EXPECT_GT(found.size(), JobLog::eventsSize / 2 / (JobLog::longestEvent + 100));
  EXPECT_EQ(found.back().message, ("999 " + text).substr(0, JobLog::longestEvent));
}

TEST_F(JobLogTest, TheMarksOfOlderHalvesStayFew) {
  constexpr int blocks = 64;  // fill a half
  const std::vector<std::string> lines(8, std::string(4000, 'x'));
  for (int half = 0; half < 40; ++half) {
    for (int i = 0; i < blocks; ++i) ASSERT_TRUE(log.addOutput("a", lines));
    now += 1h;
  }
  const auto bytes = testdata::bytes(StoredLog(folder.path(), "a").output());
  EXPECT_THAT(bytes, testing::StartsWith("#1 2023-11-14T22:13:20.000000Z output\n#"));
  EXPECT_LT(bytes.find('|'), 33 * 45U);
  const auto all = this->lines("a"), lately = this->lines("a", {.since = start + 20h});
  EXPECT_EQ(all.dropped + std::ssize(all.lines), log.newest("a"));
  EXPECT_GE(lately.dropped + std::ssize(lately.lines), 20 * blocks * 8);
  EXPECT_LE(lately.dropped + std::ssize(lately.lines), 23 * blocks * 8);
}

TEST_F(JobLogTest, ManyShortLinesDisplaceNoEventsFromAnAnswer) {
  ASSERT_TRUE(log.addEvent("a", "started"));
  ASSERT_TRUE(log.addOutput("a", std::vector<std::string>(mostLogLines + 10, "y")));
  const auto found = lines("a");
  ASSERT_EQ(std::ssize(found.lines), mostLogLines + 1);
  EXPECT_EQ(found.dropped, 10);
  EXPECT_EQ(found.lines[0].message, "started");
  EXPECT_EQ(found.lines[1].number, 12);
}

TEST_F(JobLogTest, NumbersAndTimesNeverGoBack) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  now -= 59min;
  ASSERT_TRUE(log.addOutput("a", {"two"}));
  EXPECT_EQ(lines("a").lines.back().seconds, 1'700'000'000) << "a correction of the clock";
  ASSERT_TRUE(next().addEvent("a", "three"));
  EXPECT_EQ(lines("a").lines.back().seconds, 1'700'000'000) << "also after a restart";
  now -= 24h;
  JobLog after = next();
  ASSERT_TRUE(after.addOutput("a", {"four"}));
  EXPECT_LT(lines("a").lines.back().seconds, 1'700'000'000) << "the clock had been wrong";
  const StoredLog files(folder.path(), "a");
  fs::remove(files.output());
  ASSERT_TRUE(after.addOutput("a", {"five"}));
  EXPECT_THAT(texts("a"), ElementsAre("3 three", "5 five"));
  fs::remove_all(folder.path());
  ASSERT_TRUE(after.addEvent("a", "six"));
  EXPECT_THAT(texts("a"), ElementsAre("6 six"));
  EXPECT_EQ(lines("a").dropped, 5);
}

TEST_F(JobLogTest, AFullDiskCostsOnlyTheLinesThatDoNotFit) {
  ASSERT_TRUE(log.addOutput("a", {"one"}));
  const auto size = fs::file_size(StoredLog(folder.path(), "a").output());
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto previous = std::signal(SIGXFSZ, SIG_IGN);
  for (std::size_t room = 0; room < 60; ++room) {
    rlimit limit = before;
    limit.rlim_cur = size + room;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto added = log.addOutput("a", {"lost"});
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    const bool isKept = texts("a").size() == 2;
    EXPECT_EQ(static_cast<bool>(added), isKept) << room;
    if (isKept) break;
    EXPECT_EQ(log.newest("a"), 1) << "nobody waits for a line that isn't there";
  }
  std::signal(SIGXFSZ, previous);
  ASSERT_TRUE(log.addOutput("a", {"kept"}));
  const auto found = lines("a").lines;
  EXPECT_EQ(found.back().number, log.newest("a"));
  EXPECT_EQ(found.back().message, "kept");
}

TEST_F(JobLogTest, LabelsNeverShareFilesAndStayInTheirFolder) {
  const std::vector<std::string> labels = {"../x",
                                           "/etc/x",
                                           "..",
                                           ".",
                                           "a b\n",
                                           std::string("a\0b", 3),
                                           "a",
                                           "A",
                                           "ü",
                                           std::string(5000, 'l'),
                                           std::string(5000, 'l') + 'm'};
  JobLog inner(folder.path() / "log", [this] { return now; });
  for (const auto& label : labels) EXPECT_TRUE(inner.addOutput(label, {label})) << label;
  for (const auto& label : labels) {
    const auto found = linesOfBlocks(inner.blocks(label, {}), {}).lines;
    ASSERT_EQ(found.size(), 1U) << label;
    EXPECT_EQ(found[0].number, 1);
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
  inner.remove("a");
  EXPECT_THAT(inner.blocks("a", {}), IsEmpty());
  EXPECT_EQ(inner.newest("a"), 0);
  EXPECT_EQ(inner.newest("A"), 1);
}

TEST_F(JobLogTest, SkipsWhatHasAnotherForm) {
  const char* const head = "#3 2024-02-29T00:00:00.000000Z output\n";
  const struct {
    std::string bytes;
    std::vector<std::string> lines;
  } rows[] = {
      {"1700000000.250 a[1]: old form\n", {}},
      {"|no head\n", {}},
      {std::string(head) + "|a\ngarbage\n|number unknown\n#9 2024-02-29T00:00:00.000000Z event\n|b\n", {"3 a", "9 b"}},
      {std::string(head) + "|a\n" + head + "|twice\n", {"3 a"}},
      {"#0 2024-02-29T00:00:00.000000Z output\n|a\n", {}},
      {"#9007199254740993 2024-02-29T00:00:00.000000Z output\n|a\n", {}},
      {"#-1 2024-02-29T00:00:00.000000Z output\n|a\n", {}},
      {"#3 2023-02-29T00:00:00.000000Z output\n|a\n", {}},
      {"#3 2024-02-29T24:00:00.000000Z output\n|a\n", {}},
      {"#3 2024-02-29 00:00:00.000000Z output\n|a\n", {}},
      {"#3 2024-02-29T00:00:00.000000Z other\n|a\n", {}},
      {"#3 2024-02-29T00:00:00.000000Z output \n|a\n", {}},
  };
  for (const auto& row : rows) {
    std::ofstream(StoredLog(folder.path(), "a").output()) << row.bytes;
    EXPECT_EQ(texts("a"), row.lines) << row.bytes;
  }
  const std::string garbage(3 * JobLog::outputSize, '\xfe');
  std::ofstream(StoredLog(folder.path(), "a").output()) << garbage;
  JobLog after = next();
  ASSERT_TRUE(after.addOutput("a", {"new"}));
  EXPECT_THAT(texts("a"), ElementsAre("1 new"));
}

TEST_F(JobLogTest, DeletesTheFilesOfALabelTogetherWhenTheLastIsOld) {
  ASSERT_TRUE(log.addEvent("quiet", "started"));
  ASSERT_TRUE(log.addEvent("busy", "started"));
  ASSERT_TRUE(log.addOutput("busy", {"new"}));
  folder.write("old.log.older", "1700000000.250 old[1]: form\n");
  const timespec old[2] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
  const timespec recent[2] = {{1'702'592'001, 0}, {1'702'592'001, 0}};  // more than 30 days later
  for (const auto& file : fs::directory_iterator(folder.path())) ::utimensat(AT_FDCWD, file.path().c_str(), old, 0);
  ::utimensat(AT_FDCWD, StoredLog(folder.path(), "busy").output().c_str(), recent, 0);
  now = start + JobLog::keptFor + 1s;
  log.prune();
  EXPECT_THAT(texts("busy"), ElementsAre("1 started", "2 new"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 2);
}

}  // namespace
}  // namespace mirvel::host
