// What the host reports of its jobs, and how they are started and stopped on request.

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <future>
#include <thread>

#include "core/files/HostMark.h"
#include "core/files/RegularFile.h"
#include "core/process/FileDescriptor.h"
#include "core/process/ProcessStatus.h"
#include "core/propertylist/Reader.h"
#include "helpers/host/Daemon.h"
#include "helpers/host/HostFixture.h"
#include "helpers/jobhost/HostAutostart.h"

namespace mirvel::host {
namespace {

namespace fs = std::filesystem;
using messages::Control;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using How = RunEnd::How;

class HostReports : public HostFixture {
 protected:
  fs::path fileOf(const std::string& label) const { return places.reports / (label + ".plist"); }
  /// None while there is no report.
  std::optional<JobReport> report(const std::string& label) const {
    const auto dictionary = propertylist::readDictionary(fileOf(label), 1 << 20);
    if (!dictionary) return std::nullopt;
    const auto report = JobReport::read(*dictionary);
    EXPECT_TRUE(report) << report.error().text();
    return report ? std::optional(*report) : std::nullopt;
  }
  /// The report as soon as it is like that.
  JobReport reportOnce(const std::string& label, const std::function<bool(const JobReport&)>& isSo) const {
    std::optional<JobReport> last;
    EXPECT_TRUE(eventually([&] {
      last = report(label);
      return last && isSo(*last);
    })) << label;
    return last.value_or(JobReport());
  }
  JobReport reportAfter(const std::string& label, std::size_t runs) const {
    return reportOnce(label,
                      [&](const JobReport& report) { return report.runs.size() == runs && report.runs.back().end; });
  }
  JobReport reportRunning(const std::string& label) const {
    return reportOnce(label, [](const JobReport& report) { return report.process != 0 && !report.isStopping; });
  }
  Result<void> control(const fs::path& file, const std::string& label, Control::Order order) {
    return embedded.control(file, label, order);
  }
  std::optional<Error::Code> codeOf(const Result<void>& result) const {
    return result ? std::nullopt : std::optional(result.error().code);
  }
};

constexpr auto Start = Control::Order::Start, Stop = Control::Order::Stop, Restart = Control::Order::Restart;
constexpr auto NotFound = Error::Code::NotFound;

TEST_F(HostReports, SayHowEachRunEnded) {
  const std::string script = folder.write("script", "#!/no/interpreter\n"), data = folder.write("data", "no program");
  fs::permissions(script, fs::perms::owner_all);
  const propertylist::Dictionary usual;
  const auto program = [](const std::string& path) { return propertylist::Dictionary{{"Program", path}}; };
  const auto failed = [](StartObstacle obstacle, int code, const std::string& subject) {
    return RunEnd{.how = How::CouldNotStart, .code = code, .obstacle = obstacle, .subject = subject};
  };
  struct Row {
    const char* label;
    const char* script;
    propertylist::Dictionary keys;
    RunEnd end;
    bool isFailure;
  };
  std::vector<Row> rows = {
      {"fine", "true", usual, {.how = How::Exited}, false},
      {"three", "exit 3", usual, {.how = How::Exited, .code = 3}, true},
      {"config", "exit 78", usual, {.how = How::Exited, .code = 78}, true},
      {"crash", "kill -SEGV $$", usual, {.how = How::Signalled, .code = SIGSEGV}, true},
      {"killed", "kill -KILL $$", usual, {.how = How::Signalled, .code = SIGKILL}, true},
      {"ended", "kill -TERM $$", usual, {.how = How::Signalled, .code = SIGTERM}, true},
      {"missing", "", program("/no/such"), failed(StartObstacle::Program, ENOENT, "/no/such"), true},
      {"unfindable", "", program("no-such-program"), failed(StartObstacle::Program, ENOENT, "no-such-program"), true},
      {"data", "", program(data), failed(StartObstacle::Program, EACCES, data), true},
      {"interpreter", "", program(script), failed(StartObstacle::Program, ENOENT, script), true},
      {"folder", "", {{"WorkingDirectory", data}}, failed(StartObstacle::WorkingDirectory, ENOTDIR, data), true},
      {"input", "", {{"StandardInPath", "/no/in"}}, failed(StartObstacle::StandardIn, ENOENT, "/no/in"), true},
      {"output", "", {{"StandardOutPath", "/"}}, failed(StartObstacle::StandardOut, EISDIR, "/"), true},
      {"error", "", {{"StandardErrorPath", "/no/e"}}, failed(StartObstacle::StandardError, ENOENT, "/no/e"), true},
  };
  if (::geteuid() == 0) {
    rows.push_back(
        {"root", "", {{"RootDirectory", "/no/root"}}, failed(StartObstacle::RootDirectory, ENOENT, "/no/root"), true});
    rows.push_back({"user", "", {{"UserName", "no such"}}, failed(StartObstacle::User, 0, "no such"), true});
    rows.push_back({"group", "", {{"GroupName", "no such"}}, failed(StartObstacle::Group, 0, "no such"), true});
  }
  for (Row& row : rows) {
    row.keys.set("RunAtLoad", true);
    const auto file = job(row.label, row.script, row.keys);
    load(file);
    const auto ended = embedded.waitForEnd(row.label, seconds(60));
    ASSERT_TRUE(ended && ended->run) << row.label;
    EXPECT_EQ(ended->run->end, row.end) << row.label;
    EXPECT_EQ(hasFailed(*ended->run), row.isFailure) << row.label;
    const JobReport report = reportAfter(row.label, 1);
    EXPECT_THAT(report.runs, ElementsAre(*ended->run)) << row.label;
    EXPECT_EQ(report.runs[0].cause, RunCause::Load);
    EXPECT_EQ(report.path, file);
    EXPECT_TRUE(report.isLoaded && !report.isTest && !report.isPartial && report.process == 0) << row.label;
  }
}

TEST_F(HostReports, SayWhetherARunWasStopped) {
  Signpost post(folder.path() / "post");
  const struct {
    const char* label;
    std::string trap;
    RunEnd end;
  } rows[] = {
      {"plain", "", {.how = How::Signalled, .code = SIGTERM, .isStopped = true}},
      {"polite", "trap 'exit 7' TERM; ", {.how = How::Exited, .code = 7, .isStopped = true}},
      {"stubborn", "trap '' TERM; ", {.how = How::Signalled, .code = SIGKILL, .isStopped = true, .isTimedOut = true}},
  };
  for (const auto& row : rows) {
    const auto file = job(row.label, row.trap + "echo up > " + post.quoted() + "; while :; do sleep 1000 & wait; done",
                          {{"RunAtLoad", true}, {"ExitTimeOut", 1}});
    load(file);
    post.line();
    ASSERT_TRUE(control(file, row.label, Stop)) << row.label;
    JobReport report = reportAfter(row.label, 1);
    EXPECT_EQ(report.runs[0].end, row.end) << row.label;
    EXPECT_FALSE(hasFailed(report.runs[0]));
    ASSERT_TRUE(control(file, row.label, Start));
    post.line();
    unload(row.label);
    report = reportAfter(row.label, 2);
    EXPECT_EQ(report.runs[1].end, row.end) << row.label;
    EXPECT_EQ(report.runs[1].cause, RunCause::Request);
    EXPECT_FALSE(reportOnce(row.label, [](const JobReport& last) { return !last.isLoaded; }).isStopping);
  }
}

TEST_F(HostReports, FollowARunWhileItLasts) {
  Signpost post(folder.path() / "post");
  load(stubbornJob("stubborn", post));
  const auto process = post.words().front();
  const JobReport report = reportRunning("stubborn");
  EXPECT_EQ(std::to_string(report.process), process);
  const auto status = ProcessStatus::of(static_cast<pid_t>(report.process));
  ASSERT_TRUE(status);
  EXPECT_EQ(report.processStart, status->start);
  ASSERT_THAT(report.runs, SizeIs(1));
  EXPECT_EQ(report.runs[0].process, report.process);
  EXPECT_FALSE(report.runs[0].end || report.runs[0].endTime);
  (void)client.ask(hostdata::Unload{.label = "stubborn", .seconds = 0});
  reportOnce("stubborn", [](const JobReport& last) { return last.isStopping && !last.isLoaded && last.process != 0; });
  EXPECT_EQ(reportAfter("stubborn", 1).process, 0);
}

TEST_F(HostReports, AreContinuedByTheNextHost) {
  Signpost post(folder.path() / "post");
  load(lastingJob("lasts", post, {{"KeepAlive", true}, {"ThrottleInterval", 1}}));
  load(job("calendar", "true", {{"StartCalendarInterval", propertylist::Dictionary{}}}));
  post.line();
  reportRunning("lasts");
  restart();
  post.line();
  JobReport report = reportOnce("lasts", [](const JobReport& last) { return last.runs.size() == 2 && last.process; });
  EXPECT_TRUE(report.runs[0].end->isStopped);
  EXPECT_EQ(report.runs[0].end->how, How::Signalled);
  ::kill(static_cast<pid_t>(report.process), SIGKILL);
  post.line();
  report = reportOnce("lasts", [](const JobReport& last) { return last.runs.size() == 3 && last.process; });
  EXPECT_FALSE(report.runs[1].end->isStopped) << "somebody else has killed it";
  EXPECT_EQ(report.runs[2].cause, RunCause::KeepAlive);

  ASSERT_TRUE(embedded.quit());
  constexpr long hour = 3600;
  const timeval earlier[2] = {{::time(nullptr) - hour, 0}, {::time(nullptr) - hour, 0}};
  ASSERT_EQ(::utimes(fileOf("calendar").c_str(), earlier), 0);
  EXPECT_TRUE(this->report("calendar")->isLoaded) << "the next host loads it";
  startNext();
  const JobReport missed = reportOnce("calendar", [](const JobReport& last) { return !last.missed.empty(); });
  EXPECT_NEAR(static_cast<double>(missed.missed.size()), 60, 1) << "it runs each minute";
  EXPECT_EQ(missed.missed.back().why, MissedRun::Why::NoHost);
}

TEST_F(HostReports, ARunOfAKilledHostIsLost) {
  Signpost post(folder.path() / "post");
  load(lastingJob("lasts", post));
  load(job("goes", "exec sleep 1000", {{"RunAtLoad", true}}));
  const auto words = post.words();
  reportRunning("goes");
  reportRunning("lasts");
  EXPECT_EQ(HostMark::in(places.reports), HostMark::State::Held);
  ASSERT_EQ(::kill(std::stoi(words[1]), SIGKILL), 0);
  ASSERT_TRUE(ends(words[1]));
  EXPECT_TRUE(eventually([&] { return HostMark::in(places.reports) == HostMark::State::Left; }));
  fs::remove(folder.path() / "jobs" / "goes.plist");
  startNext();
  post.line();
  const JobReport report =
      reportOnce("lasts", [](const JobReport& last) { return last.runs.size() == 2 && last.process; });
  EXPECT_EQ(report.runs[0].end->how, How::Lost);
  EXPECT_TRUE(report.runs[0].endTime);
  const JobReport gone = reportOnce("goes", [](const JobReport& last) { return !last.isLoaded; });
  EXPECT_EQ(gone.process, 0);
  ASSERT_THAT(gone.runs, SizeIs(1));
  EXPECT_EQ(gone.runs[0].end->how, How::Lost) << "the job isn't loaded any more";
}

TEST_F(HostReports, AreWrittenAgainAfterACleanup) {
  Signpost post(folder.path() / "post");
  load(lastingJob("lasts", post));
  post.line();
  const JobReport before = reportRunning("lasts");
  for (const fs::path& removed : {fileOf("lasts"), places.reports / ".host", places.reports, places.folder}) {
    fs::rename(removed, folder.path() / "removed");
    EXPECT_EQ(reportRunning("lasts"), before) << removed;
    EXPECT_TRUE(eventually([&] { return HostMark::in(places.reports) == HostMark::State::Held; })) << removed;
    fs::remove_all(folder.path() / "removed");
  }
}

TEST_F(HostReports, OfRootAreForEverybody) {
  const Roots roots = Roots::below(folder.path());
  const HostSetup setup{.places = HostPlaces::ofRoot(roots), .environment = {}};
  Pipe ready = Pipe::make();
  const pid_t host = ::fork();
  if (host == 0) {
    (void)runHost(setup, [&] { (void)!::write(ready.write.number(), "", 1); });
    ::_exit(0);
  }
  ready.write.reset();
  char byte = 0;
  ASSERT_EQ(readUninterrupted(ready.read.number(), &byte, 1), 1);
  load(job("job", "exit 2", {{"RunAtLoad", true}}));
  const fs::path file = roots.publicReports / "job.plist";
  ASSERT_TRUE(eventually([&] {
    const auto dictionary = propertylist::readDictionary(file, 1 << 20);
    const auto report = dictionary ? JobReport::read(*dictionary) : dictionary.error();
    return report && report->runs.size() == 1 && report->runs[0].end == RunEnd{.code = 2};
  }));
  constexpr auto everybody =
      fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read;
  EXPECT_EQ(fs::status(file).permissions(), everybody);
  EXPECT_EQ(fs::status(roots.publicReports / ".host").permissions(), everybody);
  EXPECT_FALSE(fs::exists(places.reports));
  ASSERT_TRUE(embedded.quit());
  EXPECT_EQ(::waitpid(host, nullptr, 0), host);
  EXPECT_EQ(HostMark::in(roots.publicReports), HostMark::State::None);
}

TEST_F(HostReports, ThatCannotBeWrittenDisturbNoJob) {
  fs::create_directories(places.folder);
  std::ofstream(places.reports) << "a file where the folder should be";
  load(job("runs", "exit 4", {{"RunAtLoad", true}}));
  const auto ended = embedded.waitForEnd("runs", seconds(60));
  ASSERT_TRUE(ended && ended->run);
  EXPECT_EQ(ended->run->end, (RunEnd{.how = How::Exited, .code = 4}));
}

TEST_F(HostReports, OrdersAreObeyedInEveryState) {
  Signpost post(folder.path() / "post");
  const std::string announce = "echo $$ > " + post.quoted();
  const auto lasting = job("lasting", announce + "; exec sleep 1000");
  const auto throttled = job("throttled", announce, {{"KeepAlive", true}, {"ThrottleInterval", 10000}});
  load(lasting);
  // Not running.
  EXPECT_TRUE(control(lasting, "lasting", Stop));
  EXPECT_TRUE(control(lasting, "lasting", Restart));
  const auto first = post.line();
  // Running.
  EXPECT_TRUE(control(lasting, "lasting", Start));
  EXPECT_EQ(std::to_string(reportRunning("lasting").process), first) << "it isn't started twice";
  EXPECT_TRUE(control(lasting, "lasting", Restart));
  const auto second = post.line();
  EXPECT_FALSE(isAlive(first));
  EXPECT_TRUE(control(lasting, "lasting", Stop));
  EXPECT_FALSE(isAlive(second));
  EXPECT_THAT(reportAfter("lasting", 2).runs, SizeIs(2));
  // Waiting for its throttle interval.
  load(throttled);
  post.line();
  reportAfter("throttled", 1);
  EXPECT_TRUE(control(throttled, "throttled", Stop));
  EXPECT_TRUE(control(throttled, "throttled", Start));
  post.line();
  reportAfter("throttled", 2);
  EXPECT_TRUE(control(throttled, "throttled", Restart));
  post.line();
  EXPECT_EQ(reportAfter("throttled", 3).runs[2].cause, RunCause::Request);
}

TEST_F(HostReports, OrdersWaitForARunThatIsBeingStopped) {
  Signpost post(folder.path() / "post");
  const auto file = stubbornJob("stubborn", post);
  load(file);
  const auto first = post.words();
  auto stopped = std::async(std::launch::async, [&] { return control(file, "stubborn", Stop); });
  reportOnce("stubborn", [](const JobReport& last) { return last.isStopping; });
  EXPECT_TRUE(control(file, "stubborn", Start));
  EXPECT_TRUE(stopped.get());
  EXPECT_FALSE(isAlive(first[0]));
  const auto second = post.words();
  auto restarted = std::async(std::launch::async, [&] { return control(file, "stubborn", Restart); });
  reportOnce("stubborn", [](const JobReport& last) { return last.runs.size() == 2 && last.isStopping; });
  EXPECT_TRUE(control(file, "stubborn", Stop)) << "which cancels the restart";
  EXPECT_EQ(codeOf(restarted.get()), Error::Code::Cancelled);
  EXPECT_FALSE(isAlive(second[0]));
  EXPECT_TRUE(control(file, "stubborn", Start));
  post.line();
  auto unloaded = std::async(std::launch::async, [&] { return control(file, "stubborn", Restart); });
  reportOnce("stubborn", [](const JobReport& last) { return last.runs.size() == 3 && last.isStopping; });
  unload("stubborn");
  EXPECT_EQ(codeOf(unloaded.get()), NotFound);
}

TEST_F(HostReports, OrdersForAJobThatIsNotLoadedFail) {
  const auto file = job("job", "true"), other = job("other", "true");
  for (const auto order : {Start, Stop, Restart}) EXPECT_EQ(codeOf(control(file, "job", order)), NotFound);
  EXPECT_FALSE(fs::exists(places.socket)) << "no host is started for that";
  load(file);
  fs::copy_file(file, folder.path() / "jobs" / "copy.plist");
  for (const auto order : {Start, Stop, Restart}) {
    EXPECT_EQ(codeOf(control(other, "other", order)), NotFound);
    EXPECT_EQ(codeOf(control(other, "job", order)), NotFound);
    EXPECT_EQ(codeOf(control(folder.path() / "jobs" / "copy.plist", "job", order)), NotFound);
    EXPECT_FALSE(control(file, "", order));
  }
  unload("job");
  for (const auto order : {Start, Stop, Restart}) EXPECT_EQ(codeOf(control(file, "job", order)), NotFound);
  EXPECT_THAT(report("job")->runs, IsEmpty());
}

TEST_F(HostReports, AStartThatFailsSaysWhy) {
  const auto file = job("job", "", {{"WorkingDirectory", "/no/such"}, {"LaunchOnlyOnce", true}});
  load(file);
  for (int i = 1; i <= 2; ++i) {
    for (const auto order : {Start, Restart}) {
      const auto started = control(file, "job", order);
      ASSERT_FALSE(started);
      EXPECT_EQ(started.error().file, "/no/such");
      EXPECT_EQ(started.error().code, Error::Code::Io);
    }
  }
  EXPECT_THAT(reportAfter("job", 4).runs, SizeIs(4));
}

TEST_F(HostReports, AHostThatHasOnlyTestedLeavesNothing) {
  const auto file = job("tried", "exit 5", {{"RunAtLoad", true}});
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(embedded.loadTemporarily(file));
    const auto ended = embedded.waitForEnd("tried", seconds(60));
    ASSERT_TRUE(ended && ended->run);
    EXPECT_EQ(ended->run->cause, RunCause::Test);
    EXPECT_FALSE(hasFailed(*ended->run));
    EXPECT_EQ(ended->run->number, 1);
    const auto published = propertylist::readDictionary(places.reports / "tried~test.plist", 1 << 20);
    ASSERT_TRUE(published);
    EXPECT_TRUE(JobReport::read(*published)->isTest);
    ASSERT_TRUE(embedded.unload(file, "tried"));
  }
  EXPECT_TRUE(eventually([&] { return !fs::exists(places.socket); })) << "the host has ended by itself";
  EXPECT_TRUE(eventually([&] { return fs::is_empty(places.reports); }));
  EXPECT_FALSE(fs::exists(places.loadedJobs()));
  EXPECT_FALSE(fs::exists(Roots::below(folder.path()).ownAutostart / HostAutostart::fileName));
  EXPECT_TRUE(embedded.unload(file, "tried"));
  EXPECT_FALSE(fs::exists(places.socket)) << "there is nothing to unload";
}

TEST_F(HostReports, AHostThatIsKilledDuringATestLeavesNothingAfterTheNext) {
  for (const bool hasChild : {false, true}) {
    Signpost post(folder.path() / (hasChild ? "child" : "leader"));
    // The system ends the leader together with the host; the child is left to the next one.
    const auto file =
        hasChild ? job("tried", "sleep 1000 & echo $! $PPID > " + post.quoted() + "; wait", {{"RunAtLoad", true}})
                 : lastingJob("tried", post);
    ASSERT_TRUE(embedded.loadTemporarily(file));
    const auto words = post.words();
    reportRunning("tried~test");
    ASSERT_EQ(::kill(std::stoi(words.at(1)), SIGKILL), 0);
    ASSERT_TRUE(embedded.unload(file, "tried"));
    EXPECT_TRUE(eventually([&] { return !fs::exists(places.socket); })) << "nobody needs the next host any more";
    EXPECT_TRUE(ends(words.at(0)));
    EXPECT_TRUE(eventually([&] { return fs::is_empty(places.reports); }));
    for (const auto& log : fs::directory_iterator(places.log())) {
      EXPECT_TRUE(log.path().filename().string().starts_with("mirvel-host-")) << log;
    }
  }
}

TEST_F(HostReports, AHostWithOtherJobsStaysAfterATest) {
  const auto file = job("tried", "true", {{"RunAtLoad", true}});
  ASSERT_TRUE(embedded.start());
  ASSERT_TRUE(embedded.loadTemporarily(file));
  ASSERT_TRUE(embedded.unload(file, "tried"));
  EXPECT_THAT(labels(), IsEmpty()) << "it answers";
}

TEST_F(HostReports, ClientsThatConnectWhileAHostEndsReachTheNext) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, label = "tried" + std::to_string(i)] {
      EmbeddedHost host(EmbeddedHost::below(MIRVEL_HOST, folder.path()), runner);
      const auto file = folder.write(label + ".plist", testdata::jobText(label, {{"Program", "/bin/true"}}));
      for (int round = 0; round < 20; ++round) {
        const auto loaded = host.loadTemporarily(file);
        ASSERT_TRUE(loaded) << loaded.error().text();
        const auto unloaded = host.unload(file, label);
        ASSERT_TRUE(unloaded) << unloaded.error().text();
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace mirvel::host
