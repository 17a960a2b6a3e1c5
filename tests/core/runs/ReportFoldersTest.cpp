#include "core/runs/ReportFolders.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/propertylist/Writer.h"
#include "support/FakeRunSource.h"
#include "support/ProgramFixture.h"

namespace mirvel {
namespace {

using testdata::ranOnce;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

std::string bytesOf(const JobReport& report) {
  return propertylist::writeBinary(report.write());
}

class ReportFolderTest : public testing::Test {
 protected:
  /// As a host does it.
  void publish(const std::string& name, const std::string& bytes) {
    const auto temporary = folder.write("reports/.new", bytes);
    fs::rename(temporary, folder.path() / "reports" / name);
    if (hasHost) mark = *HostMark::set(folder.path() / "reports", 0600);
  }
  void publish(const JobReport& report) { publish(report.label + ".plist", bytesOf(report)); }
  /// Reads until nothing is left. What has been delivered as labels, removed ones with a minus sign.
  std::vector<std::string> read() {
    std::vector<std::string> result;
    deliveries = 0;
    while (reader.read([&](RunDelivery delivery) {
      ++deliveries;
      gap = delivery.gap;
      host = delivery.host;
      for (const JobReport& report : delivery.reports) {
        result.push_back(report.label);
        reports[report.label] = report;
      }
      for (const std::string& label : delivery.removed) result.push_back('-' + label);
    })) {
    }
    return result;
  }

  testdata::TemporaryFolder folder;
  testdata::RecordingConsole console;
  bool hasHost = true;
  HostMark mark;
  ReportFolder reader{folder.path() / "reports", RunDomain::User, console};
  std::map<std::string, JobReport> reports;
  std::string gap;
  HostMark::State host = HostMark::State::None;
  int deliveries = 0;
};

TEST_F(ReportFolderTest, OnlyWhatHasChangedIsDelivered) {
  EXPECT_THAT(read(), IsEmpty());
  EXPECT_EQ(deliveries, 0) << "there never was such a folder";
  publish(ranOnce("a", "/a", {}));
  publish(ranOnce("b", "/b", {}));
  EXPECT_THAT(read(), UnorderedElementsAre("a", "b"));
  EXPECT_EQ(reports["a"], ranOnce("a", "/a", {}));
  EXPECT_THAT(read(), IsEmpty());
  EXPECT_EQ(deliveries, 1);
  publish(ranOnce("b", "/b", {.code = 1}));  // of the same size
  EXPECT_THAT(read(), ElementsAre("b"));
  EXPECT_EQ(reports["b"].runs[0].end->code, 1);
  fs::remove(folder.path() / "reports/a.plist");
  EXPECT_THAT(read(), ElementsAre("-a"));
  fs::remove_all(folder.path() / "reports");
  EXPECT_THAT(read(), ElementsAre("-b"));
  EXPECT_EQ(gap, "");
  publish(ranOnce("a", "/a", {}));
  EXPECT_THAT(read(), ElementsAre("a"));
}

TEST_F(ReportFolderTest, ALabelIsGoneWithItsLastFileAndTheNewestCounts) {
  publish("old.plist", bytesOf(ranOnce("a", "/a", {.code = 1})));
  fs::last_write_time(folder.path() / "reports/old.plist", fs::file_time_type::clock::now() - std::chrono::hours(1));
  publish("new.plist", bytesOf(ranOnce("a", "/a", {.code = 2})));
  EXPECT_THAT(read(), ElementsAre("a", "a"));
  EXPECT_EQ(reports["a"].runs[0].end->code, 2);
  fs::remove(folder.path() / "reports/old.plist");
  EXPECT_THAT(read(), IsEmpty());
  publish("new.plist", bytesOf(ranOnce("b", "/a", {})));
  EXPECT_THAT(read(), ElementsAre("b", "-a"));
}

TEST_F(ReportFolderTest, WhatIsNoReportIsSkippedWithOneLine) {
  const std::string good = bytesOf(ranOnce("a", "/a", {}));
  JobReport excessive = ranOnce("x", "/x", {});
  excessive.runs.resize(JobReport::mostRuns * 10 + 1);
  propertylist::Dictionary wrongType = ranOnce("x", "/x", {}).write();
  wrongType.set("runs", propertylist::Value("none"));
  const std::pair<const char*, std::string> malformed[] = {
      {"empty.plist", ""},
      {"torn.plist", good.substr(0, good.size() - 5)},
      {"array.plist", propertylist::writeBinary(propertylist::Array{})},
      {"dictionary.plist", propertylist::writeBinary(propertylist::Dictionary())},
      {"type.plist", propertylist::writeBinary(wrongType)},
      {"label.plist", bytesOf(ranOnce("", "/x", {}))},
      {"runs.plist", bytesOf(excessive)},
      {"large.plist", std::string(ReportFolder::largestFile + 1, ' ')},
  };
  for (const auto& [name, bytes] : malformed) publish(name, bytes);
  EXPECT_THAT(read(), IsEmpty());
  EXPECT_THAT(console.logged, SizeIs(std::size(malformed)));
  for (const auto& [name, bytes] : malformed) EXPECT_THAT(console.logged, Contains(HasSubstr(name)));
  console.logged.clear();
  fs::create_directory(folder.path() / "reports/folder.plist");
  fs::create_symlink("/etc/hosts", folder.path() / "reports/link.plist");
  ASSERT_EQ(::mkfifo((folder.path() / "reports/pipe.plist").c_str(), 0600), 0);
  publish("noreport.txt", good);
  publish(".hidden.plist", good);
  EXPECT_THAT(read(), IsEmpty());
  EXPECT_THAT(console.logged, IsEmpty()) << "the same files again, and what can't be a report";
  publish("torn.plist", good);
  EXPECT_THAT(read(), ElementsAre("a"));
  publish("torn.plist", "x");
  EXPECT_THAT(read(), ElementsAre("-a")) << "what it said isn't true any more";
}

TEST_F(ReportFolderTest, JobsAreLoadedAsLongAsTheirHostLives) {
  JobReport job = ranOnce("a", "/a", {});
  job.isLoaded = true;
  job.nextRun = 5e9;
  hasHost = false;
  publish(job);
  const fs::path reports = folder.path() / "reports";
  const auto expectState = [&](bool isLoaded, HostMark::State host) {
    EXPECT_THAT(read(), ElementsAre("a")) << "the file is the same";
    EXPECT_EQ(this->reports["a"].isLoaded, isLoaded);
    EXPECT_EQ(this->reports["a"].nextRun.has_value(), isLoaded);
    EXPECT_EQ(this->host, host);
    EXPECT_THAT(read(), IsEmpty());
  };
  expectState(false, HostMark::State::None);
  auto first = HostMark::set(reports, 0600);
  ASSERT_TRUE(first);
  expectState(true, HostMark::State::Held);
  (void)folder.write("left", "");
  fs::rename(folder.path() / "left", reports / ".host");  // as a killed host leaves it: not locked
  expectState(false, HostMark::State::Left);
  const auto second = HostMark::set(reports, 0600);
  ASSERT_TRUE(second);
  expectState(true, HostMark::State::Held);
  *first = HostMark();
  EXPECT_THAT(read(), IsEmpty()) << "the end of a host that was replaced changes nothing";
  fs::remove(reports / ".host");
  expectState(false, HostMark::State::None);
}

TEST_F(ReportFolderTest, AProcessThatDoesntExistDoesntRun) {
  const auto self = ProcessIdentity::ofThisProcess();
  const auto running = [](std::int64_t process, std::int64_t start) {
    JobReport report = testdata::runsNow("a", "/a");
    report.process = process;
    report.processStart = start;
    report.isStopping = true;
    return report;
  };
  const struct {
    const char* what;
    std::int64_t process;
    std::int64_t start;
    bool runs;
  } rows[] = {
      {"this process", self.id, self.start, true},
      {"one that had the number before", self.id, self.start - 1, false},
      {"a number that no process can have", 0x7FFFFFFF, 1, false},
      {"no number of a process", std::int64_t{1} << 40, 1, false},
      {"a negative number, which is a group", -self.id, 1, false},
  };
  for (const auto& row : rows) {
    publish(running(row.process, row.start));
    EXPECT_THAT(read(), ElementsAre("a")) << row.what;
    const JobReport& report = reports["a"];
    EXPECT_EQ(report.process, row.runs ? row.process : 0) << row.what;
    EXPECT_EQ(report.isStopping, row.runs) << row.what;
    EXPECT_EQ(report.runs.back().end.has_value(), !row.runs) << row.what;
    if (row.runs) continue;
    EXPECT_EQ(report.runs.back().end->how, RunEnd::How::Lost) << row.what;
  }
}

TEST_F(ReportFolderTest, AProcessThatEndsIsNoticedAtTheNextReading) {
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(pipe[1]);
    char end = 0;
    (void)!::read(pipe[0], &end, 1);
    ::_exit(0);
  }
  JobReport report = testdata::runsNow("a", "/a");
  report.process = child;
  report.processStart = ProcessIdentity::of(child)->start;
  publish(report);
  EXPECT_THAT(read(), ElementsAre("a"));
  EXPECT_EQ(reports["a"].process, child);
  EXPECT_THAT(read(), IsEmpty());
  ::close(pipe[0]);
  ::close(pipe[1]);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_THAT(read(), ElementsAre("a")) << "the file is the same";
  EXPECT_EQ(reports["a"].process, 0);
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(ReportFolderTest, ManyReportsComeInPieces) {
  constexpr int count = 450;
  for (int i = 0; i < count; ++i) publish(ranOnce("job" + std::to_string(i), "/x", {}));
  EXPECT_THAT(read(), SizeIs(count));
  EXPECT_EQ(deliveries, 3);
}

TEST_F(ReportFolderTest, AFolderThatCantBeListedIsAGap) {
  (void)folder.write("reports", "a file");
  EXPECT_THAT(read(), IsEmpty());
  EXPECT_THAT(gap, HasSubstr("reports"));
  fs::remove(folder.path() / "reports");
  publish(ranOnce("a", "/a", {}));
  EXPECT_THAT(read(), ElementsAre("a"));
  EXPECT_EQ(gap, "");
}

class ReportFoldersTest : public testdata::ProgramFixture {
 protected:
  fs::path publish(const fs::path& in, const JobReport& report) const {
    return folder.write(in.lexically_relative(folder.path()) / (report.label + ".plist"), bytesOf(report));
  }
  void begin() {
    source = std::make_unique<ReportFolders>(places, platform);
    source->begin([this](RunDelivery delivery) {
      ++deliveries;
      const char domain = delivery.domain == RunDomain::User ? 'u' : 'r';
      for (const JobReport& report : delivery.reports) delivered.push_back(domain + (":" + report.label));
    });
  }
  void pass(double seconds) {
    for (const double end = queue.now() + seconds; queue.now() < end;) {
      fileQueue.runAll();
      queue.runFor(0.05);
    }
  }

  Roots places = [this] {
    Roots result = roots;
    result.publicReports = folder.path() / "public";
    return result;
  }();
  std::unique_ptr<ReportFolders> source;
  std::vector<std::string> delivered;
  int deliveries = 0;  ///< also empty ones
};

TEST_F(ReportFoldersTest, BothFoldersAreReadAtTheBeginningAndWithinASecondOfAChange) {
  publish(places.ownReports(), ranOnce("a", "/a", {}));
  publish(places.publicReports, ranOnce("d", "/d", {}));
  begin();
  EXPECT_THAT(delivered, IsEmpty());
  pass(0.1);
  EXPECT_THAT(delivered, ElementsAre("u:a", "r:d"));
  EXPECT_THAT(monitors.folders(), ElementsAre(places.ownReports(), places.publicReports));

  publish(places.ownReports(), ranOnce("b", "/b", {}));
  for (int i = 0; i < 100; ++i) monitors.change(places.ownReports());
  EXPECT_EQ(fileQueue.count(), 1U) << "a burst is one reading";
  publish(places.ownReports(), ranOnce("c", "/c", {}));
  monitors.change(places.ownReports());
  pass(0.9);
  EXPECT_THAT(delivered, ElementsAre("u:a", "r:d", "u:b", "u:c"));
  EXPECT_EQ(fileQueue.count(), 0U) << "nothing is polled";
  source->setVisible(true);
  EXPECT_EQ(fileQueue.count(), 2U) << "verifies what has been read";
}

TEST_F(ReportFoldersTest, AChangeDuringAReadingIsReadAfterIt) {
  begin();
  publish(places.ownReports(), ranOnce("a", "/a", {}));
  monitors.change(places.ownReports());
  queue.runDue();
  monitors.change(places.ownReports());
  pass(1);
  EXPECT_THAT(delivered, ElementsAre("u:a"));
}

TEST_F(ReportFoldersTest, AProcessThatHasOutlivedItsHostIsWatchedWhileTheWindowIsVisible) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::pause();
    ::_exit(0);
  }
  JobReport report = testdata::runsNow("a", "/a");
  report.process = child;
  report.processStart = ProcessIdentity::of(child)->start;
  publish(places.ownReports(), report);
  auto mark = HostMark::set(places.ownReports(), 0600);
  ASSERT_TRUE(mark);
  begin();
  source->setVisible(true);
  pass(1);
  EXPECT_THAT(delivered, ElementsAre("u:a"));
  const int before = deliveries;
  pass(5);
  EXPECT_EQ(deliveries, before) << "its host reports the end";
  *mark = HostMark();
  monitors.change(places.ownReports());
  pass(5);
  EXPECT_THAT(delivered, ElementsAre("u:a", "u:a")) << "not loaded any more";
  EXPECT_EQ(::kill(child, SIGKILL), 0);
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);
  pass(1.1);
  EXPECT_THAT(delivered, ElementsAre("u:a", "u:a", "u:a"));
  const int after = deliveries;
  pass(5);
  EXPECT_EQ(deliveries, after);
}

TEST_F(ReportFoldersTest, NothingIsDeliveredAfterTheEnd) {
  publish(places.ownReports(), ranOnce("a", "/a", {}));
  begin();
  fileQueue.runAll();
  source.reset();
  pass(1);
  EXPECT_THAT(delivered, IsEmpty());
  EXPECT_THAT(monitors.folders(), IsEmpty());
}

}  // namespace
}  // namespace mirvel
