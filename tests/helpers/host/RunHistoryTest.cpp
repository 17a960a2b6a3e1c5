// The reports of jobs on disk, and the runs that they keep.

#include "helpers/host/RunHistory.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <numeric>
#include <set>

#include "core/propertylist/Reader.h"
#include "helpers/host/JobReports.h"
#include "helpers/hostdata/HostPlaces.h"
#include "support/TestData.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono;
using testing::ElementsAre;
using testing::IsEmpty;

class RunHistoryTest : public testing::Test {
 protected:
  static constexpr RunHistory::Moment moment(int second) { return RunHistory::Moment(seconds(1'000'000 + second)); }
  static constexpr RunEnd exited(int code) { return {.how = RunEnd::How::Exited, .code = code}; }

  /// The report file of the label "job".
  fs::path file() const { return reportsFolder / "job.plist"; }
  JobReport onDisk() const {
    const auto dictionary = propertylist::readDictionary(file(), 1 << 20);
    const auto report = dictionary ? JobReport::read(*dictionary) : dictionary.error();
    EXPECT_TRUE(report) << report.error().text();
    return report ? *report : JobReport();
  }
  std::vector<std::int64_t> numbersOnDisk() const {
    std::vector<std::int64_t> result;
    for (const RunReport& run : onDisk().runs) result.push_back(run.number);
    return result;
  }
  static void run(RunHistory& history, int second, int code) {
    history.begin(RunCause::Load, moment(second));
    history.finish(exited(code), moment(second + 1));
  }
  Result<void> publish(RunHistory& history) const {
    return history.publish({.label = "job", .path = "/job.plist", .isLoaded = true});
  }
  static void setTime(const fs::path& path, long second) {
    const timeval times[2] = {{.tv_sec = second, .tv_usec = 0}, {.tv_sec = second, .tv_usec = 0}};
    ASSERT_EQ(::utimes(path.c_str(), times), 0);
  }

  testdata::TemporaryFolder folder;
  const fs::path reportsFolder = folder.path() / "reports";
  JobReports reports{reportsFolder, JobReports::Readers::Owner};
};

TEST_F(RunHistoryTest, KeepsTheNewestHundredOverRestarts) {
  for (int host = 0; host < 3; ++host) {
    RunHistory history(reports, "job", false);
    history.resume();
    for (int i = 0; i < 50; ++i) {
      run(history, host * 1000 + i, host);
      history.addMissed({{.time = host * 1000.0 + i}});
      ASSERT_TRUE(publish(history));
    }
  }
  std::vector<std::int64_t> expected(100);
  std::iota(expected.begin(), expected.end(), 51);
  EXPECT_EQ(numbersOnDisk(), expected);
  const JobReport report = onDisk();
  EXPECT_EQ(
      report.runs.front(),
      (RunReport{
          .number = 51, .start = 1'001'000, .endTime = 1'001'001, .cause = RunCause::Load, .end = RunEnd{.code = 1}}));
  ASSERT_EQ(report.missed.size(), 100U);
  EXPECT_EQ(report.missed.front().time, 1000);
  EXPECT_LT(fs::file_size(file()), 20'000U);
}

TEST_F(RunHistoryTest, ARunThatHadNotEndedIsLostWhenItWasLastKnownToRun) {
  {
    RunHistory history(reports, "job", false);
    history.begin(RunCause::Calendar, moment(5));
    history.setProcess(4711);
    ASSERT_TRUE(publish(history));
  }
  EXPECT_FALSE(onDisk().runs.back().end);
  setTime(file(), 1'000'500);
  RunHistory next(reports, "job", false);
  const auto last = next.resume();
  ASSERT_TRUE(last);
  EXPECT_TRUE(last->report.isLoaded);
  EXPECT_EQ(last->time, sys_seconds(1'000'500s));
  ASSERT_TRUE(publish(next));
  const RunReport lost{.number = 1,
                       .start = 1'000'005,
                       .endTime = 1'000'500,
                       .cause = RunCause::Calendar,
                       .process = 4711,
                       .end = RunEnd{.how = RunEnd::How::Lost}};
  EXPECT_THAT(onDisk().runs, ElementsAre(lost));
  next.prolongLost(4711, moment(900));
  next.prolongLost(4712, moment(1000));  // of a run that was begun later and isn't known
  run(next, 1000, 0);
  next.prolongLost(4711, moment(2000));  // it isn't the last run any more
  ASSERT_TRUE(publish(next));
  EXPECT_EQ(onDisk().runs.front().endTime, 1'000'900);
  EXPECT_EQ(onDisk().runs.back().endTime, 1'001'001);
}

TEST_F(RunHistoryTest, AReportThatCantBeReadAtFirstIsContinuedLater) {
  RunHistory killed(reports, "job", false);
  killed.resume();
  for (int i = 0; i < 3; ++i) run(killed, i, 0);
  killed.begin(RunCause::Load, moment(4));
  ASSERT_TRUE(publish(killed));
  fs::permissions(reportsFolder, fs::perms::all);
  RunHistory next(reports, "job", false);
  EXPECT_FALSE(next.resume());
  run(next, 10, 7);
  EXPECT_FALSE(publish(next));
  run(next, 20, 8);
  fs::permissions(reportsFolder, fs::perms::owner_all);
  ASSERT_TRUE(publish(next));
  run(next, 30, 9);
  ASSERT_TRUE(publish(next));
  EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2, 3, 4, 5, 6, 7));
  std::vector<std::int64_t> codes;
  for (const RunReport& run : onDisk().runs) codes.push_back(run.end ? run.end->code : -1);
  EXPECT_THAT(codes, ElementsAre(0, 0, 0, 0, 7, 8, 9));
  EXPECT_EQ(onDisk().runs[3].end->how, RunEnd::How::Lost);
}

TEST_F(RunHistoryTest, NoPartOfATornFileIsTakenForAReport) {
  RunHistory history(reports, "job", false);
  for (int i = 0; i < 3; ++i) run(history, i, i);
  ASSERT_TRUE(publish(history));
  const std::string whole = testdata::bytes(file());
  const JobReport report = onDisk();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    folder.write("reports/job.plist", whole.substr(0, size));
    const auto found = reports.read("job", false);
    ASSERT_TRUE(found) << size;
    ASSERT_FALSE(*found) << size;
    ASSERT_EQ(reports.takeTroubles().size(), 1U) << size;
    ASSERT_EQ(testdata::bytes(file().string() + ".damaged-1"), whole.substr(0, size)) << "it is kept";
    fs::remove(file().string() + ".damaged-1");
  }
  folder.write("reports/job.plist", whole);
  EXPECT_EQ((*reports.read("job", false))->report, report);
}

TEST_F(RunHistoryTest, DamagedFilesAreSetAsideAndNotLoggedTwice) {
  fs::create_directory(reportsFolder);
  const std::string tooLarge(2 << 20, ' ');
  const std::string contents[] = {"garbage", "<plist><array/></plist>", "<plist><dict/></plist>", tooLarge,
                                  std::string("bplist00\xff\xff", 10)};
  for (const std::string& content : contents) {
    folder.write("reports/job.plist", content);
    RunHistory history(reports, "job", false);
    EXPECT_FALSE(history.resume());
    run(history, 1, 2);
    ASSERT_TRUE(publish(history));
    EXPECT_THAT(numbersOnDisk(), ElementsAre(1));
    EXPECT_EQ(reports.takeTroubles().size(), 1U);
  }
  EXPECT_TRUE(fs::exists(file().string() + ".damaged-5"));
}

TEST_F(RunHistoryTest, RunsThatCantBeWrittenAreWrittenLater) {
  RunHistory history(reports, "job", false);
  run(history, 1, 0);
  ASSERT_TRUE(publish(history));
  fs::rename(reportsFolder, folder.path() / "kept");
  folder.write("reports", "a file where the folder should be");
  for (int i = 2; i <= 4; ++i) {
    run(history, i, 0);
    history.addMissed({{.time = static_cast<double>(i)}});
    EXPECT_FALSE(publish(history));
    EXPECT_TRUE(history.hasNews());
  }
  EXPECT_EQ(reports.takeTroubles().size(), 1U) << "one line of the log";
  fs::remove(reportsFolder);
  fs::rename(folder.path() / "kept", reportsFolder);
  ASSERT_TRUE(publish(history));
  EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(onDisk().missed.size(), 3U);
  EXPECT_FALSE(history.hasNews());
  fs::remove_all(reportsFolder);
  ASSERT_TRUE(publish(history));
  EXPECT_THAT(numbersOnDisk(), ElementsAre(4)) << "the last run is written again";
  fs::remove_all(reportsFolder);
  folder.write("reports", "");
  run(history, 9, 0);
  EXPECT_FALSE(publish(history));
  EXPECT_EQ(reports.takeTroubles().size(), 1U) << "another failure";
}

TEST_F(RunHistoryTest, AttemptsDuringAShortageDisplaceNoRuns) {
  const RunEnd shortage{.how = RunEnd::How::CouldNotStart, .code = EAGAIN, .obstacle = StartObstacle::Resources};
  RunHistory history(reports, "job", false);
  run(history, 1, 3);
  for (int second = 10; second < 3000; second += 10) {
    history.begin(RunCause::KeepAlive, moment(second));
    history.finish(shortage, moment(second));
    ASSERT_TRUE(publish(history));
  }
  run(history, 3000, 0);
  ASSERT_TRUE(publish(history));
  EXPECT_THAT(numbersOnDisk(), ElementsAre(1, 2, 3));
  EXPECT_EQ(onDisk().runs[1].start, 1'000'010);
  EXPECT_EQ(onDisk().runs[1].endTime, 1'002'990);
}

TEST_F(RunHistoryTest, EveryLabelHasAFileOfItsOwn) {
  const std::string longLabel(300, 'x');
  const std::string labels[] = {"a",
                                "A",
                                "a/b",
                                "..",
                                ".",
                                ".hidden",
                                "a~test",
                                "a b",
                                "ä",
                                longLabel,
                                longLabel + "y",
                                "a.plist",
                                std::string("a\0b", 3)};
  for (const bool isTest : {false, true}) {
    for (const auto& label : labels) ASSERT_TRUE(reports.write({.label = label, .isTest = isTest})) << label;
  }
  std::size_t count = 0;
  std::set<std::string> folded;  // as on a disk that ignores case
  for (const auto& entry : fs::directory_iterator(reportsFolder)) {
    std::string name = entry.path().filename();
    if (name == ".host") continue;
    EXPECT_EQ(entry.path().extension(), ".plist");
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    folded.insert(name);
    ++count;
  }
  EXPECT_EQ(count, 2 * std::size(labels));
  EXPECT_EQ(folded.size(), count);
  for (const bool isTest : {false, true}) {
    for (const auto& label : labels) EXPECT_EQ((*reports.read(label, isTest))->report.label, label);
  }
  reports.remove("a", true);
  EXPECT_TRUE(reports.contains("a", false));
  EXPECT_FALSE(reports.contains("a", true));
}

TEST_F(RunHistoryTest, TidyingKeepsWhatIsKnownOfOtherJobs) {
  constexpr long now = 10'000'000, month = 30L * 24 * 3600;
  const struct {
    JobReport report;
    long age;
    bool isKept;
    bool isOutdated;
  } rows[] = {
      {{.label = "loaded", .isLoaded = true}, 2 * month, true, false},
      {{.label = "unloaded"}, month - 10, true, false},
      {{.label = "old"}, month + 10, false, false},
      {{.label = "killed", .isLoaded = true}, 5, true, true},
      {{.label = "ran", .process = 42}, 5, true, true},
      {{.label = "tested", .isLoaded = true, .isTest = true}, 5, false, true},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(reports.write(row.report));
    for (const auto& entry : fs::directory_iterator(reportsFolder)) {
      if (entry.path().filename().string().starts_with(row.report.label)) setTime(entry.path(), now - row.age);
    }
  }
  folder.write("reports/left.plist.new", "left by a host that was killed");
  std::vector<std::string> outdated;
  for (const JobReport& report : reports.tidy(sys_seconds(seconds(now)), {"loaded"})) outdated.push_back(report.label);
  for (const auto& row : rows) {
    EXPECT_EQ(std::count(outdated.begin(), outdated.end(), row.report.label), row.isOutdated) << row.report.label;
    EXPECT_EQ(reports.contains(row.report.label, row.report.isTest), row.isKept) << row.report.label;
  }
  EXPECT_FALSE(fs::exists(reportsFolder / "left.plist.new"));
}

TEST_F(RunHistoryTest, TwoHostsDontReplaceEachOthersMark) {
  const auto make = [&] { return std::make_unique<JobReports>(reportsFolder, JobReports::Readers::Owner); };
  auto first = make(), second = make();
  const auto mark = [&] { return FileIdentity::at(reportsFolder / ".host"); };
  ASSERT_TRUE(first->write({.label = "a"}));
  const FileIdentity firsts = mark();
  ASSERT_TRUE(second->write({.label = "b"}));
  second->keepMark();
  EXPECT_EQ(mark(), firsts);
  first.reset();
  EXPECT_EQ(mark(), FileIdentity());
  second->keepMark();
  EXPECT_EQ(HostMark::in(reportsFolder), HostMark::State::Held);
}

TEST_F(RunHistoryTest, FollowsNoLinksAndTrustsNoFolderOfOthers) {
  const fs::path victim = folder.write("victim", "untouched");
  const JobReport report{.label = "job"};
  fs::create_directory(reportsFolder);
  for (const char* const name : {"job.plist", "job.plist.new"}) fs::create_symlink(victim, reportsFolder / name);
  EXPECT_FALSE(reports.read("job", false)) << "a link";
  ASSERT_TRUE(reports.write(report));
  EXPECT_EQ(testdata::bytes(victim), "untouched");
  EXPECT_EQ(onDisk(), report) << "the link is replaced";
  ASSERT_EQ(::chmod(reportsFolder.c_str(), 0770), 0);
  EXPECT_EQ(reports.write(report).error().code, Error::Code::NotPermitted);
  EXPECT_EQ(reports.read("job", false).error().code, Error::Code::NotPermitted);
  fs::rename(reportsFolder, folder.path() / "elsewhere");
  ASSERT_EQ(::chmod((folder.path() / "elsewhere").c_str(), 0700), 0);
  fs::create_directory_symlink(folder.path() / "elsewhere", reportsFolder);
  EXPECT_FALSE(reports.write(report));
  fs::remove(reportsFolder);
  fs::remove_all(folder.path() / "elsewhere");
  JobReports below(folder.path() / "gone" / "reports", JobReports::Readers::Owner);
  EXPECT_FALSE(below.write(report));
  EXPECT_FALSE(fs::exists(folder.path() / "gone")) << "a machine that is deleted doesn't come back";
}

TEST_F(RunHistoryTest, PublicReportsContainNothingOfPrivateJobFiles) {
  const mode_t before = ::umask(077);
  const fs::path publicFolder = folder.path() / "var" / "lib" / "reports";
  JobReports publicReports(publicFolder, JobReports::Readers::Everyone);
  const fs::path job = folder.write("jobs/job.plist", "");
  RunEnd end{.how = RunEnd::How::CouldNotStart, .code = ENOENT, .obstacle = StartObstacle::StandardOut};
  end.subject = "/secret/path";
  const JobReport report{.label = "job", .path = job.string(), .runs = {{.number = 1, .endTime = 2.0, .end = end}}};
  ASSERT_TRUE(reports.write(report));
  ASSERT_EQ(::chmod(folder.path().c_str(), 0711), 0);
  const struct {
    mode_t file, itsFolder;
    bool isPublic;
  } rows[] = {{0640, 0755, false}, {0644, 0700, false}, {0644, 0711, true}};
  for (const auto& row : rows) {
    ASSERT_EQ(::chmod(job.c_str(), row.file), 0);
    ASSERT_EQ(::chmod(job.parent_path().c_str(), row.itsFolder), 0);
    ASSERT_TRUE(publicReports.write(report));
    EXPECT_EQ((*publicReports.read("job", false))->report.runs[0].end->subject, row.isPublic ? "/secret/path" : "");
  }
  ASSERT_TRUE(publicReports.write({.label = "test", .path = job.string(), .isTest = true}));
  EXPECT_EQ((*publicReports.read("test", true))->report.path, "") << "the name of its folder is a secret";
  ::umask(before);
  EXPECT_EQ(onDisk().runs[0].end->subject, "/secret/path");
  const auto mode = [](const fs::path& path) { return static_cast<unsigned>(fs::status(path).permissions()); };
  EXPECT_EQ(mode(publicFolder), 0755U);
  EXPECT_EQ(mode(publicFolder.parent_path().parent_path()), 0755U);
  EXPECT_EQ(mode(publicFolder / "job.plist"), 0644U);
  EXPECT_EQ(mode(reportsFolder), 0700U);
  EXPECT_EQ(mode(file()), 0600U);
}

}  // namespace
}  // namespace mirvel::host
